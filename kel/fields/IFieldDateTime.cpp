#include "kel/fields/IFieldDateTime.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "zed/value/TTimeValues.h"

#include <QDateTimeEdit>
#include <QSignalBlocker>

namespace {

// The control's lowest time stands for "no value" and shows the special text.
const QDateTime kEmpty(QDate(100, 1, 1), QTime(0, 0), Qt::UTC);

} // namespace

QString IFieldDateTime::QtDisplayFormat(const char* format)
{
    // A run of exactly three y is the full year; other runs mean the same in both.
    QString qt;
    const QString given = QString::fromLatin1(format);
    for (int i = 0; i < given.size();) {
        int run = 0;
        while (i + run < given.size() && given[i + run] == QLatin1Char('y'))
            ++run;
        if (run == 0) {
            qt += given[i++];
            continue;
        }
        qt += QString(run == 3 ? 4 : run, QLatin1Char('y'));
        i += run;
    }
    return qt;
}

IFieldDateTime::IFieldDateTime(IElementInfo& info, IContainer* container) : KELTextField(info, container) {}

IFieldDateTime::~IFieldDateTime() = default;

void IFieldDateTime::Create(unsigned int& id, IElementInfo& info)
{
    auto* edit = new KELControl<QDateTimeEdit>(this, GetContainer());
    AdoptControl(edit, id, info);
    edit->setTimeSpec(Qt::UTC);
    edit->setDisplayFormat(QtDisplayFormat(kDisplayFormat));
    if (IsReadOnly())
        IControlBase::ShowAsReadOnly(edit);
    edit->setMinimumDateTime(kEmpty);
    edit->setCalendarPopup(true);
    edit->setReadOnly(IsReadOnly() != 0);
    QObject::connect(edit, &QDateTimeEdit::dateTimeChanged, edit, [this](const QDateTime& time) {
        m_hasValue = time != kEmpty;
        m_serverDefault = false;
    });
    m_pEdit = edit;
    SetWindow(edit);
    ShowEmpty(QString());
    Resize(QSize(edit->sizeHint().width(), edit->sizeHint().height()));
}

void IFieldDateTime::ShowEmpty(const QString& text)
{
    m_hasValue = false;
    m_serverDefault = false;
    if (!m_pEdit)
        return;
    const QSignalBlocker quiet(m_pEdit);
    // A blank, not an empty text: Qt shows no special text for an empty one.
    m_pEdit->setSpecialValueText(text.isEmpty() ? QStringLiteral(" ") : text);
    m_pEdit->setDateTime(kEmpty);
}

void IFieldDateTime::ShowTime(std::int64_t milliseconds)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
    if (!m_pEdit || time <= kEmpty)
        return;
    const QSignalBlocker quiet(m_pEdit);
    m_pEdit->setDateTime(time);
    m_hasValue = true;
    m_serverDefault = false;
}

void IFieldDateTime::GetValue(std::string& text) const
{
    if (m_serverDefault)
        text = GetDefault();
    else
        text = m_hasValue && m_pEdit ? TAbsTime::Format(m_pEdit->dateTime().toMSecsSinceEpoch()) : std::string();
}

void IFieldDateTime::SetToNotReturned() { ShowEmpty(QString::fromStdString(KELResources::String(4025))); }

void IFieldDateTime::SetValue(const std::string& text)
{
    if (text.empty()) {
        ShowEmpty(QString());
        return;
    }
    const std::optional<std::int64_t> milliseconds = TAbsTime::Parse(text);
    if (!milliseconds) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldDateTime::SetValue, not a time : " << text;
        return;
    }
    ShowTime(*milliseconds);
}

void IFieldDateTime::SetValue(const TValue& value)
{
    if (value.GetDatatype() != ZED_DT_ABSTIME) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldDateTime::SetValue, a value of data type "
                                                    << value.GetDatatype() << " is not a time";
        return;
    }
    if (!value.IsPresent()) {
        ShowEmpty(QString::fromStdString(value.ToString()));
        return;
    }
    ShowTime(static_cast<const TAbsTime&>(value).GetMilliseconds());
}

void IFieldDateTime::GetPartialRequest(std::string& request) { request += CurrentText(); }

bool IFieldDateTime::SetToNullValue()
{
    ShowEmpty(QString());
    return true;
}

bool IFieldDateTime::SetToServerDefault()
{
    ShowEmpty(QString::fromStdString(KELResources::String(4044)));
    m_serverDefault = true;
    return true;
}

std::unique_ptr<TValue> IFieldDateTime::GetTValue(bool always)
{
    return ScalarTValue(
        always, [] { return std::make_unique<TAbsTime>(); },
        [](const std::string& text) -> std::unique_ptr<TValue> {
            const std::optional<std::int64_t> milliseconds = TAbsTime::Parse(text);
            return milliseconds ? std::make_unique<TAbsTime>(*milliseconds) : nullptr;
        });
}
