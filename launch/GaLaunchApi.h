// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/* The interface of the launch plugin ("libOrvexLaunch.so"), which KEL loads at
 * run time when it is present: the applications registered for an entity
 * class, a directive and an element, and a way to start one. Without the
 * plugin a form simply offers no applications to launch.
 *
 * Plain C, so that any build of the plugin fits any build of KEL. */

#ifdef __cplusplus
extern "C" {
#endif

#define GALAUNCH_API_VERSION 1u

/* What an application is registered for: the entity's class path (the code
 * of each level, at most 10), a directive and an element identifier. */
typedef struct GaLaunchQuery {
    const unsigned int* classPath;
    unsigned int depth;
    unsigned int directive;
    unsigned int element;
} GaLaunchQuery;

typedef struct GaLAUNCHAPI {
    /* GALAUNCH_API_VERSION of the plugin's build. */
    unsigned int version;
    /* How many applications are registered for the query. */
    unsigned int (*Count)(const GaLaunchQuery* query);
    /* The name of the index-th of them (from 0), or null; valid until the
     * next call into the plugin. */
    const char* (*Name)(const GaLaunchQuery* query, unsigned int index);
    /* Starts the index-th of them, detached, for the entity given as text.
     * 0 when it started; otherwise an errno value saying why not. */
    int (*Start)(const GaLaunchQuery* query, unsigned int index, const char* entityText);
} GaLAUNCHAPI;

/* The plugin's one entry: its interface, or null when it cannot serve. */
const GaLAUNCHAPI* GaLAUNCHGetAPIInterface(void);
typedef const GaLAUNCHAPI* (*GaLAUNCHGetAPIInterfaceFunction)(void);

#ifdef __cplusplus
}
#endif
