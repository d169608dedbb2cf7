// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/frame/KELConsoleSink.h"

#include <QWidget>

#include <cstdint>
#include <memory>
#include <string>

class IListViewOutput;

/// One tab of the console: a list of time-stamped messages, each with the
/// icon of its severity. The list keeps at most 10,000 messages: when full,
/// the oldest 2,000 go at once.
class KEL_EXPORT IOutputWnd : public QWidget {
public:
    static constexpr int kTimeWidth = 125;
    static constexpr int kMessageWidth = 500;
    static constexpr int kMaxItems = 10000;
    static constexpr int kTrimCount = 2000;
    /// What a message cell draws and is measured by: more than any column
    /// can show. The item keeps the whole message, which Copy gives.
    static constexpr int kMaxShown = 10000;
    /// Where an item keeps its message's severity (column 0).
    static constexpr int kSeverityRole = Qt::UserRole + 1;

    IOutputWnd();
    ~IOutputWnd() override;

    /// What the time cell of a row needs to be shown whole: its text, icon and margins.
    static int NeededWidth(const IListViewOutput& list, int row);

    /// Makes the list (control id 33310 + index), its icons and columns, as a
    /// child of parent. Without its three icons the list has neither images
    /// nor columns (it still exists).
    bool Create(QWidget* parent);
    /// 1 when the message was added or there is no list yet; 0 when it could not be.
    int SetMessage(KEL_T_Severity severity, const char* text);
    /// Deletes every message; true when done.
    bool Clear();
    /// Every message, a line each: "[done] text", "[problem] ...", "[information] ...".
    std::string GetMessagesText() const;

    const std::string& GetTitle() const { return m_title; }
    void SetTitle(const std::string& title) { m_title = title; }
    int GetIndex() const { return m_index; }
    void SetIndex(int index) { m_index = index; }
    IListViewOutput* GetListCtrl() const { return m_pList; }
    bool HasImages() const { return m_hasImages; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct WidthBound;
    void WidenFor(const QString& message);
    const QString& TimeText();

    std::string m_title;
    int m_index = 0;
    bool m_hasImages = false;
    bool m_scrollPending = false;
    IListViewOutput* m_pList = nullptr;  // a child window
    std::int64_t m_timeOfText = -1;
    QString m_timeText;
    std::unique_ptr<WidthBound> m_pBound;
};
