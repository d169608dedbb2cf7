// SPDX-License-Identifier: BSD-3-Clause
// KEL's resource module, English texts.

#include "resources/KELResApi.h"

#include <cstddef>

#define KELRES_EXPORT __attribute__((visibility("default")))

[[gnu::used]] static const char kelres_version_record[] =
    "@(#)KELVERSION " KEL_VERSION_STRING ";FileDescription=KEL resources, English;ProductName=KEL;";

namespace {

struct Entry {
    unsigned int id;
    const char* text;
};

// Numbered strings 4004 to 4071. Formats keep their %s; the bool texts are
// ones the configuration reader accepts; 4045 is the dictionary's "no default"
// text; 4069 is an upper-case fragment of attribute names that no field shows.
constexpr Entry kStrings[] = {
    {4004, "Field"},
    {4005, "Entity"},
    {4006, "Directive"},
    {4007, "Add an entry"},
    {4008, "Remove this entry"},
    {4009, "Information"},
    {4010, "Done"},
    {4011, "Problem"},
    {4012, "Help"},
    {4013, "Close"},
    {4014, "Clear"},
    {4015, "the add button of a set"},
    {4016, "Time"},
    {4017, "Message"},
    {4018, " :"},
    {4019, "Copy"},
    {4020, "\n"},
    {4021, "\t"},
    {4022, "Workspace"},
    {4023, "Output"},
    {4024, "Console"},
    {4025, "<not returned>"},
    {4026, "TRUE"},
    {4027, "FALSE"},
    {4028, "an element with this identifier is already in the presentation"},
    {4029, "Yes"},
    {4030, "No"},
    {4031, "Unknown"},
    {4032, "Not supported"},
    {4033, "A window of the form could not be created"},
    {4034, "Units"},
    {4035, ".cfg"},
    {4036, ".ucfg"},
    {4037, "Configuration loaded: "},
    {4038, "Configuration saved: "},
    {4039, "Window creation failed: %s"},
    {4040, ".kdoc"},
    {4041, ".kdoc."},
    {4042, "The workspace could not be opened."},
    {4043, "Default"},
    {4044, "<server default>"},
    {4045, "(no default)"},
    {4046, "Entity"},
    {4047, "Time"},
    {4048, "Reply"},
    {4049, "The required field %s has no value."},
    {4050, "ORVEX_SYSTEM_PATH"},
    {4051, "ORVEX_USER_PATH"},
    {4052, "The user configuration file could not be read: "},
    {4053, "The system configuration file could not be read: "},
    {4054, "FileDescription"},
    {4055, "ProductName"},
    {4056, "A file operation failed."},
    {4057, "The file %s could not be read. %s"},
    {4058, "The directory %s could not be created. %s"},
    {4059, "The file %s could not be deleted. %s"},
    {4060, "The directory %s could not be removed. %s"},
    {4061, "The file %s could not be written. %s"},
    {4062, "The file %s could not be copied. %s"},
    {4063, "The file %s could not be opened for its checksum. %s"},
    {4064, "The attributes of %s could not be set. %s"},
    {4065, "orvex/kel"},
    {4066, "Settings"},
    {4067, "Saving the workspace %s"},
    {4068, "Workspaces"},
    {4069, "SECRET"},
    // Texts of this library's own beyond the numbers above.
    {4070, "\"%s\" is not %s"},
    {4071, "The field %s does not hold a valid value: %s"},
    // Commands of host toolbars: the button's text, a line feed, the tip.
    {4072, "&Refresh\nRead the attributes of the entity again"},
    {4073, "&Apply\nSet the attributes that were changed since they were read"},
    {4074, "&Events\nShow every event report that the network raised about the entity since the form was opened"},
    {4075, "\"%s\" is not a date and time of the form %s"},
    {4076, "Workspace %s saved"},
    {4077, "The workspace %s could not be saved: %s"},
    {4078, "%s could not be listed: %s"},
};

// Popup menu 4004: six sub-menus used by position.
constexpr KELResMenuItem kSingleField[] = {{33303, "&Revert to initial value"}};
constexpr KELResMenuItem kSetOf[] = {{33307, "&Add an entry"}, {33308, "Re&move this entry"}};
constexpr KELResMenuItem kThirdGroup[] = {{33301, "&Launch application"}};
constexpr KELResMenuItem kCommon[] = {{33309, "&Help"}};
constexpr KELResMenuItem kLocalDefault[] = {{33304, "Set to &default"}};
constexpr KELResMenuItem kServerDefault[] = {{33304, "Use the &server's default"}};

template <std::size_t N>
constexpr KELResSubMenu Sub(const char* title, const KELResMenuItem (&items)[N])
{
    return {title, items, N};
}

constexpr KELResSubMenu kFieldMenu[] = {
    Sub("Field", kSingleField),          Sub("Set", kSetOf),
    Sub("Launch", kThirdGroup),          Sub("Common", kCommon),
    Sub("Local default", kLocalDefault), Sub("Server default", kServerDefault),
};

// Severity icons 4009 (information), 4010 (done), 4011 (problem) and the
// bitmap 4007 of a set's add button, 16x16.
constexpr const char* kInformation = R"(/* XPM */
static char* information[] = {
"16 16 3 1", "  c None", ". c #1F5FBF", "o c #FFFFFF",
"     ......     ", "   ..........   ", "  .....oo.....  ", " ......oo...... ",
" .............. ", "......ooo.......", "......ooo.......", ".......oo.......",
".......oo.......", ".......oo.......", ".......oo.......", " .....oooo..... ",
" .............. ", "  ............  ", "   ..........   ", "     ......     "};
)";
constexpr const char* kDone = R"(/* XPM */
static char* done[] = {
"16 16 2 1", "  c None", ". c #2E8B3A",
"                ", "              ..", "             ...", "            ... ",
"           ...  ", "          ...   ", "..       ...    ", "...     ...     ",
" ...   ...      ", "  ... ...       ", "   .....        ", "    ...         ",
"     .          ", "                ", "                ", "                "};
)";
constexpr const char* kProblem = R"(/* XPM */
static char* problem[] = {
"16 16 3 1", "  c None", ". c #C0281E", "o c #FFFFFF",
"     ......     ", "   ..........   ", "  ............  ", " ...oo....oo... ",
" ....oo..oo.... ", ".....oooo.......", "......oo........", ".....oooo.......",
"....oo..oo......", "...oo....oo.....", "................", " .............. ",
" .............. ", "  ............  ", "   ..........   ", "     ......     "};
)";
constexpr const char* kAdd = R"(/* XPM */
static char* add[] = {
"16 16 2 1", "  c None", ". c #202020",
"                ", "                ", "       ..       ", "       ..       ",
"       ..       ", "       ..       ", "       ..       ", "  ............  ",
"  ............  ", "       ..       ", "       ..       ", "       ..       ",
"       ..       ", "       ..       ", "                ", "                "};
)";

}  // namespace

extern "C" {

KELRES_EXPORT const char* KELResString(unsigned int id)
{
    for (const Entry& entry : kStrings)
        if (entry.id == id)
            return entry.text;
    return nullptr;
}

KELRES_EXPORT const KELResSubMenu* KELResMenu(unsigned int id, unsigned int* count)
{
    if (id != 4004)
        return nullptr;
    if (count)
        *count = sizeof kFieldMenu / sizeof kFieldMenu[0];
    return kFieldMenu;
}

KELRES_EXPORT const char* KELResImage(unsigned int id)
{
    switch (id) {
    case 4007: return kAdd;
    case 4009: return kInformation;
    case 4010: return kDone;
    case 4011: return kProblem;
    default: return nullptr;
    }
}

KELRES_EXPORT const char* KELResDescription(void) { return "KEL resources, English"; }

}  // extern "C"
