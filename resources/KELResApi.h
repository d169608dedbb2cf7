// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/* The interface of KEL's resource module, a shared library of its own that
 * KEL loads by name ("libKELRes.so") when it initialises. A translation is
 * another build of the module with other texts behind the same numbers.
 * Plain C, so that any build of the module fits any build of KEL. */

#ifdef __cplusplus
extern "C" {
#endif

/* One entry of a popup sub-menu; id 0 is a separator. */
typedef struct KELResMenuItem {
    unsigned int id;
    const char* text;
} KELResMenuItem;

typedef struct KELResSubMenu {
    const char* title;
    const KELResMenuItem* items;
    unsigned int count;
} KELResSubMenu;

/* The numbered string, or null when the module has none of that number. */
const char* KELResString(unsigned int id);
/* The sub-menus of a menu (by position), or null; count receives their number. */
const KELResSubMenu* KELResMenu(unsigned int id, unsigned int* count);
/* An icon or bitmap as XPM text, or null. */
const char* KELResImage(unsigned int id);
/* Says which build this is, e.g. "KEL resources, English". */
const char* KELResDescription(void);

#ifdef __cplusplus
}
#endif
