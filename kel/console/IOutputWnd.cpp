#include "kel/console/IOutputWnd.h"

#include "kel/frame/KELResources.h"
#include "kel/output/IListViewOutput.h"
#include "zed/value/TTimeValues.h"

#include <QHeaderView>
#include <QIcon>
#include <QPixmap>
#include <QResizeEvent>
#include <QStyledItemDelegate>
#include <QTimer>

#include <algorithm>
#include <array>

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

} // namespace

int IOutputWnd::NeededWidth(const IListViewOutput& list, int row)
{
    const int indent = list.rootIsDecorated() ? list.indentation() : 0;
    return list.sizeHintForIndex(list.model()->index(row, 0)).width() + indent;
}

IOutputWnd::IOutputWnd() = default;

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
    m_pList->setHeaderLabels({QString::fromStdString(KELResources::String(4016)),
                              QString::fromStdString(KELResources::String(4017))});
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
    const QString time = QString::fromStdString(TAbsTime::Now().ToString());
    if (m_hasImages) {
        const int width = m_pList->fontMetrics().horizontalAdvance(
            message.size() > kMaxShown ? QStringView(message).left(kMaxShown).toString() : message);
        if (width > m_pList->columnWidth(1))
            m_pList->setColumnWidth(1, width);
    }
    if (m_pList->topLevelItemCount() >= kMaxItems)
        m_pList->model()->removeRows(0, kTrimCount);
    QTreeWidgetItem* item = m_pList->AddRow(time, message);
    if (!item)
        return 0;
    item->setData(0, kSeverityRole, static_cast<int>(severity));
    if (m_hasImages) {
        bool complete = false;
        item->setIcon(0, Icons(complete)[static_cast<std::size_t>(ImageOf(severity))]);
        // 125 pixels were a time's width in the dialog font the design knew;
        // the first time shown says what this font needs (every time is as wide).
        if (m_pList->topLevelItemCount() == 1)
            m_pList->setColumnWidth(0, std::max(m_pList->columnWidth(0), NeededWidth(*m_pList, 0)));
    }
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
