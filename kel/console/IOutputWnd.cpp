// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/IOutputWnd.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/output/IListViewOutput.h"
#include "zed/value/TTimeValues.h"

#include <QHeaderView>
#include <QFontMetricsF>
#include <QIcon>
#include <QPixmap>
#include <QResizeEvent>
#include <QStyledItemDelegate>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace {

constexpr unsigned int kIcons[] = {4009, 4010, 4011};

// The image of each severity: information 0, done 1, problem 2.
int ImageOf(KEL_T_Severity severity)
{
    switch (severity) {
    case KEL_SEVERITY_DONE: return 1;
    case KEL_SEVERITY_PROBLEM: return 2;
    default: return 0;
    }
}

const std::array<QIcon, 3>& Icons(bool& complete)
{
    static std::array<QIcon, 3> icons;
    complete = true;
    for (std::size_t i = 0; i < icons.size(); ++i) {
        if (icons[i].isNull()) {
            QPixmap image;
            if (const char* xpm = KELResources::Image(kIcons[i]); xpm && image.loadFromData(QByteArray(xpm), "XPM"))
                icons[i] = QIcon(image.scaled(16, 16));
        }
        complete = complete && !icons[i].isNull();
    }
    return icons;
}

// Draws no more of a message than a column can show; the item keeps it whole.
class ShownPart : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (option->text.size() > IOutputWnd::kMaxShown)
            option->text.truncate(IOutputWnd::kMaxShown);
    }
};

}  // namespace

// Most messages are far narrower than their column, and shaping a text to
// measure it costs more than all the rest of adding it. The sum of the
// characters' advances bounds an ASCII text's width (kerning and rounding are
// allowed one pixel a character), so only a message that might not fit is
// measured.
struct IOutputWnd::WidthBound {
    static constexpr char16_t kAscii = 128;

    // -1 for a text with characters beyond ASCII.
    int Of(const QFont& font, QStringView text)
    {
        if (!valid || font != measured) {
            const QFontMetricsF metrics(font);
            for (char16_t c = 0; c < kAscii; ++c)
                advance[c] = static_cast<int>(std::ceil(metrics.horizontalAdvance(QChar(c)))) + 1;
            measured = font;
            valid = true;
        }
        int sum = 0;
        for (const QChar c : text) {
            if (c.unicode() >= kAscii)
                return -1;
            sum += advance[c.unicode()];
        }
        return sum;
    }

    QFont measured;
    std::array<int, kAscii> advance{};
    bool valid = false;
};

int IOutputWnd::NeededWidth(const IListViewOutput& list, int row)
{
    const int indent = list.rootIsDecorated() ? list.indentation() : 0;
    return list.sizeHintForIndex(list.model()->index(row, 0)).width() + indent;
}

IOutputWnd::IOutputWnd() : m_pBound(std::make_unique<WidthBound>()) {}

IOutputWnd::~IOutputWnd() = default;

bool IOutputWnd::Create(QWidget* parent)
{
    setParent(parent);
    m_pList = new IListViewOutput(this);
    m_pList->setProperty("controlId", 33310 + m_index);
    m_pList->setAccessibleName(QString::fromStdString(m_title));
    m_pList->setGeometry(rect());
    m_pList->setItemDelegate(new ShownPart(m_pList));
    m_pList->show();
    bool complete = false;
    Icons(complete);
    if (!complete) {
        m_pList->setHeaderHidden(true);
        return true;
    }
    m_hasImages = true;
    m_pList->setIconSize(QSize(16, 16));
    m_pList->setColumnCount(2);
    m_pList->setHeaderLabels({QString::fromStdString(KELResources::String(KELString::kTime)),
                              QString::fromStdString(KELResources::String(KELString::kMessage))});
    m_pList->header()->setStretchLastSection(false);
    m_pList->setColumnWidth(0, kTimeWidth);
    m_pList->setColumnWidth(1, kMessageWidth);
    m_pList->setSelectionBehavior(QAbstractItemView::SelectRows);
    return true;
}

int IOutputWnd::SetMessage(KEL_T_Severity severity, const char* text)
{
    if (!m_pList)
        return 1;
    const QString message = QString::fromUtf8(text ? text : "");
    if (m_hasImages)
        WidenFor(message);
    if (m_pList->topLevelItemCount() >= kMaxItems)
        m_pList->RemoveFirstRows(kTrimCount);
    std::unique_ptr<QTreeWidgetItem> row = IListViewOutput::MakeRow(TimeText(), message);
    row->setData(0, kSeverityRole, static_cast<int>(severity));
    if (m_hasImages) {
        bool complete = false;
        row->setIcon(0, Icons(complete)[static_cast<std::size_t>(ImageOf(severity))]);
    }
    m_pList->AppendRow(std::move(row));
    // 125 pixels were a time's width in the dialog font the design knew;
    // the first time shown says what this font needs (every time is as wide).
    if (m_hasImages && m_pList->topLevelItemCount() == 1)
        m_pList->setColumnWidth(0, std::max(m_pList->columnWidth(0), NeededWidth(*m_pList, 0)));
    // Scrolling lays the whole list out: once per turn of the event loop,
    // not once per message of a burst.
    if (!m_scrollPending) {
        m_scrollPending = true;
        QTimer::singleShot(0, this, [this] {
            m_scrollPending = false;
            if (m_pList && m_pList->topLevelItemCount() > 0)
                m_pList->scrollToItem(m_pList->topLevelItem(m_pList->topLevelItemCount() - 1));
        });
    }
    return 1;
}

void IOutputWnd::WidenFor(const QString& message)
{
    const int column = m_pList->columnWidth(1);
    const QStringView shown = QStringView(message).left(kMaxShown);
    const int bound = m_pBound->Of(m_pList->font(), shown);
    if (bound >= 0 && bound <= column)
        return;
    const int width = m_pList->fontMetrics().horizontalAdvance(shown.toString());
    if (width > column)
        m_pList->setColumnWidth(1, width);
}

const QString& IOutputWnd::TimeText()
{
    // Messages come in bursts: many share their millisecond, and its text.
    const TAbsTime now = TAbsTime::Now();
    if (now.GetValue() != m_timeOfText || m_timeText.isEmpty()) {
        m_timeOfText = now.GetValue();
        m_timeText = QString::fromStdString(now.ToString());
    }
    return m_timeText;
}

std::string IOutputWnd::GetMessagesText() const
{
    static const char* const kSeverity[] = {"done", "problem", "information"};
    std::string text;
    for (int i = 0; m_pList && i < m_pList->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_pList->topLevelItem(i);
        const int severity = row->data(0, kSeverityRole).toInt();
        text += std::string("[") + kSeverity[severity >= 0 && severity <= 2 ? severity : 1] + "] "
                + row->text(1).toStdString() + "\n";
    }
    return text;
}

bool IOutputWnd::Clear()
{
    if (!m_pList)
        return false;
    m_pList->clear();
    return true;
}

void IOutputWnd::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_pList)
        m_pList->setGeometry(rect());
}
