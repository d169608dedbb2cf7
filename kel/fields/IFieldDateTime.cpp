// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldDateTime.h"
#include "kel/frame/KELString.h"

#include "kel/controls/IControlDateTime.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "zed/value/TTimeValues.h"

#include <QFontMetrics>
#include <QStyle>

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
    auto* edit = new IControlDateTime(this, GetContainer(), QtDisplayFormat(kDisplayFormat));
    AdoptControl(edit, *edit, id, info);
    // Typing or a pick from the calendar replaces the server's default.
    QObject::connect(edit, &QLineEdit::textEdited, edit, [this] { ForgetServerDefault(); });
    m_pEdit = edit;
    SetWindow(edit);
    // Room for a whole time, the calendar button and the frame.
    const QFontMetrics metrics(edit->font());
    const int button = edit->style()->pixelMetric(QStyle::PM_SmallIconSize) + 8;
    const int width = metrics.horizontalAdvance(edit->GetFormat() + QStringLiteral("00")) + button + 8;
    Resize(QSize(std::max(150, width), std::max(edit->sizeHint().height(), metrics.height() + 3)));
}

void IFieldDateTime::ShowNothing(const std::string& text)
{
    ForgetServerDefault();
    if (m_pEdit) {
        m_pEdit->ShowNothing(QString::fromStdString(text));
        m_pEdit->MarkInvalid(QString());
    }
}

void IFieldDateTime::GetValue(std::string& text) const
{
    text.clear();
    if (!m_pEdit)
        return;
    if (m_pEdit->IsBlank()) {
        if (ServerDefaultHolds())
            text = GetDefault();
        return;
    }
    const QDateTime time = m_pEdit->Time();
    text = time.isValid() ? TAbsTime::Format(time.toMSecsSinceEpoch()) : m_pEdit->displayText().toStdString();
}

void IFieldDateTime::SetToNotReturned() { ShowNothing(KELResources::String(KELString::kNotReturned)); }

void IFieldDateTime::SetValue(const std::string& text)
{
    if (text.empty()) {
        ShowNothing(std::string());
        return;
    }
    const std::optional<std::int64_t> milliseconds = TAbsTime::Parse(text);
    if (!milliseconds) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldDateTime::SetValue, not a time : " << text;
        return;
    }
    ForgetServerDefault();
    if (m_pEdit) {
        m_pEdit->ShowTime(QDateTime::fromMSecsSinceEpoch(*milliseconds, Qt::UTC));
        m_pEdit->MarkInvalid(QString());
    }
}

void IFieldDateTime::SetValue(const TValue& value)
{
    if (value.GetDatatype() != ZED_DT_ABSTIME) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this)
            << "KEL : IFieldDateTime::SetValue, a value of data type " << value.GetDatatype() << " is not a time";
        return;
    }
    if (!value.IsPresent()) {
        ShowNothing(value.ToString());
        return;
    }
    SetValue(TAbsTime::Format(static_cast<const TAbsTime&>(value).GetMilliseconds()));
    RememberPutIn(CurrentText());
    SetInitialValue(value.Clone());
}

void IFieldDateTime::GetPartialRequest(std::string& request) { request += CurrentText(); }

bool IFieldDateTime::ValueChanged() const { return TextChangedSincePutIn(); }

bool IFieldDateTime::CheckText(std::string* reason)
{
    if (!m_pEdit || m_pEdit->IsBlank() || m_pEdit->Time().isValid())
        return true;
    if (reason)
        *reason = KELResources::Format(KELString::kNotADateTime,
                                       {m_pEdit->displayText().toStdString(), m_pEdit->GetFormat().toStdString()});
    return false;
}

void IFieldDateTime::ControlCallback(int code, void*) { CheckOnCallback(m_pEdit, code, IsReadOnly() != 0); }

bool IFieldDateTime::SetToNullValue()
{
    ShowNothing(std::string());
    return true;
}

bool IFieldDateTime::SetToServerDefault() { return ShowServerDefault(); }

std::unique_ptr<TValue> IFieldDateTime::GetTValue(bool always)
{
    return ScalarTValue(
        always, [] { return std::make_unique<TAbsTime>(); },
        [](const std::string& text) -> std::unique_ptr<TValue> {
            const std::optional<std::int64_t> milliseconds = TAbsTime::Parse(text);
            return milliseconds ? std::make_unique<TAbsTime>(*milliseconds) : nullptr;
        });
}
