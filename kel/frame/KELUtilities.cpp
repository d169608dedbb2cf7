// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELUtilities.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/frame/KELVersionRecord.h"
#include "zed/ZedFile.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyle>
#include <QStyleOptionTitleBar>

#include <cctype>
#include <cstdio>
#include <dlfcn.h>
#include <iterator>
#include <pwd.h>
#include <unistd.h>
#include <sstream>

KEL_VERSION_RECORD("KEL library");

namespace {

// The largest program or library whose version record is looked for.
constexpr std::size_t kMaxVersionedFile = std::size_t(1) << 30;

constexpr std::string_view kMarker = "@(#)KELVERSION ";

// "key=value;" pairs after the version numbers.
std::string ValueOf(const std::string& record, const std::string& key)
{
    const std::string wanted = ";" + key + "=";
    const auto at = record.find(wanted);
    if (key.empty() || at == std::string::npos)
        return {};
    const auto start = at + wanted.size();
    return record.substr(start, record.find(';', start) - start);
}

}  // namespace

std::string KELUtilities::GetLoginName()
{
    if (const passwd* entry = ::getpwuid(::geteuid()))
        return entry->pw_name;
    return "";
}

QWidget* KELUtilities::GetValidView(QMainWindow* frame)
{
    if (!frame)
        return nullptr;
    if (auto* area = qobject_cast<QMdiArea*>(frame->centralWidget())) {
        QMdiSubWindow* active = area->activeSubWindow();
        return active ? active->widget() : nullptr;
    }
    return frame->centralWidget();
}

QObject* KELUtilities::GetFrameDocument(QMainWindow* frame)
{
    QWidget* view = GetValidView(frame);
    return view ? view->property("kelDocument").value<QObject*>() : nullptr;
}

void KELUtilities::CalculateCaptionTextRect(QWidget* window, QRect& rectangle)
{
    rectangle = QRect();
    if (!window)
        return;
    QStyleOptionTitleBar option;
    option.initFrom(window);
    option.text = window->windowTitle();
    option.titleBarFlags = window->windowFlags();
    option.rect =
        QRect(0, 0, window->width(), window->style()->pixelMetric(QStyle::PM_TitleBarHeight, &option, window));
    rectangle = window->style()->subControlRect(QStyle::CC_TitleBar, &option, QStyle::SC_TitleBarLabel, window);
}

bool KELUtilities::GetFileVersion(const std::string& fileName, unsigned int& major, unsigned int& minor,
                                  unsigned int& build, std::string& text1, std::string& text2)
{
    major = minor = build = 0;
    text1.clear();
    text2.clear();
    // Programs and libraries, not devices or pipes: one bounded read.
    std::string content, error;
    if (!ZedReadRegularFile(fileName, kMaxVersionedFile, content, error))
        return false;
    // The reader's own copy of the marker stands in this library too: a
    // record is a marker followed by a version number.
    auto at = content.find(kMarker);
    while (at != std::string::npos
           && !(at + kMarker.size() < content.size()
                && std::isdigit(static_cast<unsigned char>(content[at + kMarker.size()]))))
        at = content.find(kMarker, at + 1);
    if (at == std::string::npos)
        return false;
    const auto end = content.find('\0', at);
    const std::string record = content.substr(at + kMarker.size(), end - at - kMarker.size());
    if (std::sscanf(record.c_str(), "%u.%u.%u", &major, &minor, &build) != 3) {
        major = minor = build = 0;
        return false;
    }
    text1 = ValueOf(record, KELResources::String(KELString::kFileDescriptionKey));
    text2 = ValueOf(record, KELResources::String(KELString::kProductNameKey));
    return true;
}

bool KELUtilities::GetModuleVersion(const void* addressInModule, unsigned int& major, unsigned int& minor,
                                    unsigned int& build, std::string& text1, std::string& text2)
{
    Dl_info info{};
    if (!addressInModule || ::dladdr(addressInModule, &info) == 0 || !info.dli_fname) {
        major = minor = build = 0;
        text1.clear();
        text2.clear();
        return false;
    }
    return GetFileVersion(info.dli_fname, major, minor, build, text1, text2);
}
