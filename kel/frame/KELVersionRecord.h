// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The version record of a shared library or program of this project: a text
// in the binary that KELUtilities::GetFileVersion finds and reads back,
//     "@(#)KELVERSION <major>.<minor>.<build>;FileDescription=<text>;ProductName=KEL;"
// Every binary of the project carries one (zed writes the same form itself).

#define KEL_VERSION_RECORD(description)                                                                                \
    [[gnu::used]] static const char kel_version_record[] =                                                             \
        "@(#)KELVERSION " KEL_VERSION_STRING ";FileDescription=" description ";ProductName=KEL;"
