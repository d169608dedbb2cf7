// SPDX-License-Identifier: BSD-3-Clause
#include "Tour.h"
#include "kel/fields/KELCompositeField.h"
#include "kel/controls/IControlContainer.h"
#include "kel/forms/IPresentationForm.h"
#include "kel/controls/KELFilterBox.h"
#include "TourSupport.h"

#include "KelBrowserWindow.h"
#include "kel/fields/IField.h"
#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/forms/IFormLine.h"
#include "kel/controls/ILabel.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/console/IConsole.h"
#include "kel/console/IEntityTree.h"
#include "kel/console/IOutputWnd.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/IHelpDialog.h"
#include "kel/output/IListViewOutput.h"
#include "kel/frame/KELPrompt.h"
#include "kel/model/IPresentationContainer.h"

#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TSetOf.h"
#include "zed/value/TValueParser.h"

#include <QApplication>
#include <QLineEdit>
#include <QToolButton>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QScrollBar>

#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>

namespace {

struct Step {
    const char* picture;
    const char* entity;
    const char* directive;
    // Argument name to the text typed into its field; an empty text clears it.
    std::map<std::string, std::string> typed;
    bool sent;  // whether the form lets the request go
    // Sets grown by their add button and filled, records filled: argument name to a JSON value.
    std::map<std::string, std::string> grown = {};
};

// The field of the argument of that label; an attribute list stands on its
// line without a label, so it is found by the argument's name.
IField* FieldOf(IInputForm& form, const std::string& name)
{
    const TDictionary& dictionary = *ZEDGetApplication()->GetDictionary();
    const TDictClass* cls = dictionary.FindClass(form.GetCurrentEntity().GetEntityClass());
    const TDictDirective* directive = cls ? cls->FindDirective(form.GetCurrentDirective()) : nullptr;
    const TDictArgument* argument = directive ? directive->FindRequestArgument(name) : nullptr;
    IField* found = nullptr;
    form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
        auto* line = dynamic_cast<IFormLine*>(&element);
        if (found || !line || !line->GetField())
            return;
        if (line->GetLabel() ? line->GetLabel()->GetPresentationName() == name
                             : argument && line->GetField()->GetID() == argument->GetID())
            found = line->GetField();
    });
    return found;
}

// The value the JSON text gives for a field of that type on the form's entity.
TValuePtr ParseFor(IInputForm& form, const TDictType& type, int id, const std::string& json, std::string& error)
{
    const TDictionary& dictionary = *ZEDGetApplication()->GetDictionary();
    return ZEDParseValue(type, json, id, {&dictionary, dictionary.FindClass(form.GetCurrentEntity().GetEntityClass())},
                         &error);
}

// An attribute list filled as an operator fills it: for each attribute the
// add button, its name typed and entered, then its value typed.
bool FillAttributes(IInputForm& form, IFieldAttrList& list, const std::string& json, std::ostream& out)
{
    std::string error;
    const TValuePtr value =
        ParseFor(form, *ZEDGetApplication()->GetDictionary()->FindType("AttributeList"), 0, json, error);
    if (!value) {
        out << "  " << error << "\n";
        return false;
    }
    const auto& attributes = static_cast<const TAttributeList&>(*value);
    int typed = 0;
    for (std::size_t i = 0; i < attributes.Size(); ++i) {
        list.GetAddButton()->click();
        IField* added = nullptr;
        for (long at = list.GetFieldContainer()->GoFirst(); at >= 0;)
            added = list.GetFieldContainer()->GetNext(at);
        auto* attribute = dynamic_cast<IFieldAttribute*>(added);
        auto* name = attribute ? qobject_cast<QLineEdit*>(attribute->GetIDField()->GetWindow()) : nullptr;
        if (!name)
            continue;
        name->setText(QString::fromStdString(attributes.At(i).GetAttributeID().GetName()));
        emit name->editingFinished();
        if (IField* field = attribute->GetValueField(); field && !field->IsReadOnly()) {
            field->SetValue(attributes.At(i).GetValue().ToString());
            ++typed;
        }
    }
    out << "  Settings: " << attributes.Size() << " added, " << typed << " typed\n";
    return typed == static_cast<int>(attributes.Size());
}

// Fills a composite as an operator would. A set is grown by its add button
// three times, the middle element removed again, then each element is given
// its part of the JSON value; an attribute list gets its attributes one by
// one; records (nested ones too) and attributes take the value whole.
bool Grow(IInputForm& form, const std::string& name, const std::string& json, std::ostream& out)
{
    IField* field = FieldOf(form, name);
    std::string error;
    TDictTypePtr whole;
    if (auto* list = dynamic_cast<IFieldAttrList*>(field))
        return FillAttributes(form, *list, json, out);
    if (auto* record = dynamic_cast<IFieldRecord*>(field); record && record->GetDictType())
        whole = record->GetDictType()->Share();
    else if (dynamic_cast<IFieldAttribute*>(field))
        whole = ZEDGetApplication()->GetDictionary()->FindType("Attribute");
    if (whole) {
        const TValuePtr value = ParseFor(form, *whole, field->GetID(), json, error);
        if (value)
            field->SetValue(*value);
        out << "  " << name << ": " << (value ? "filled" : error) << "\n";
        return value != nullptr;
    }
    auto* set = dynamic_cast<IFieldSetOf*>(field);
    if (!set || !set->GetDictType())
        return false;
    for (int i = 0; i < 3; ++i)
        set->GetAddButton()->click();
    IFieldContainer* elements = set->GetFieldContainer();
    long at = elements->GoFirst();
    elements->GetNext(at);
    set->RemoveField(static_cast<int>(elements->GetNext(at)->GetID()));
    const TValuePtr value = ParseFor(form, *set->GetDictType(), 0, json, error);
    if (!value) {
        out << "  " << name << ": " << error << "\n";
        return false;
    }
    const auto& values = static_cast<const TConstructedOf&>(*value);
    std::size_t index = 0;
    for (long it = elements->GoFirst(); it >= 0 && index < values.Size();)
        elements->GetNext(it)->SetValue(values.At(index++));
    out << "  " << name << ": 3 added, 1 removed, " << elements->GetCount() << " filled\n";
    return true;
}

// Types a text into the field of the argument of that label, as an operator would.
bool Type(IInputForm& form, const std::string& name, const std::string& text)
{
    bool found = false;
    form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
        auto* line = dynamic_cast<IFormLine*>(&element);
        if (found || !line || !line->GetField() || !line->GetLabel())
            return;
        if (line->GetLabel()->GetPresentationName() == name) {
            // An empty text clears the field, as deleting its contents would.
            if (text.empty())
                line->GetField()->SetToNullValue();
            else
                line->GetField()->SetValue(text);
            found = true;
        }
    });
    return found;
}

// An entity's attributes: read, one changed and applied, read again; the
// network's event report about the change shows in the events.
int TourAttributes(KelBrowserWindow& window, const std::string& folder, std::ostream& out)
{
    int faults = 0;
    const char* const entity = "Network core Router r1";
    out << "== Attributes of " << entity << "\n";
    // Found in the tree as an operator would: its classes opened down to it.
    IEntityTree& tree = *window.GetTree();
    for (QTreeWidgetItem* item = tree.topLevelItem(0); item && !tree.FindEntity(entity);) {
        item->setExpanded(true);
        window.WaitForCalls();
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < item->childCount() && !next; ++i)
            if (const std::string text = item->child(i)->data(0, IEntityTree::kEntityRole).toString().toStdString();
                item->child(i)->type() == IEntityTree::ClassItem || std::string(entity).rfind(text, 0) == 0)
                next = item->child(i);
        item = next;
    }
    if (QTreeWidgetItem* found = tree.FindEntity(entity)) {
        found->setExpanded(true);
        tree.setCurrentItem(found);
    }
    out << "  tree: " << (tree.FindEntity(entity) ? "found" : "not found") << " after " << tree.GetShowCount()
        << " Show calls\n";
    if (!window.OpenAttributes(entity) || !window.WaitForCalls() || !window.GetAttributes()) {
        out << "  the attributes could not be read\n";
        return 1;
    }
    faults += Save(window, folder, "07-attributes.png", out) ? 0 : 1;
    IField* priority = nullptr;
    window.GetAttributes()->GetContainer()->ForEachElement([&](IPresentationElement& element) {
        auto* line = dynamic_cast<IFormLine*>(&element);
        if (line && line->GetLabel() && line->GetLabel()->GetPresentationName() == "Priority")
            priority = line->GetField();
    });
    if (!priority) {
        out << "  no Priority line\n";
        return faults + 1;
    }
    std::string before;
    priority->GetValue(before);
    priority->SetValue(std::string("7"));
    const bool applied = window.Apply() && window.WaitForCalls();
    std::string after;
    priority->GetValue(after);
    out << "  Priority " << before << " -> 7, applied: " << (applied ? "yes" : "no") << ", read again: " << after
        << "\n  request: " << window.GetRequestText() << "\n";
    if (!applied || after != "7")
        ++faults;
    window.ShowOutput(QStringLiteral("Events"));
    const int events = window.GetEventLists()->count();
    out << "  event lists: " << events << "\n";
    if (events == 0)
        ++faults;
    faults += Save(window, folder, "08-attributes-applied-events.png", out) ? 0 : 1;
    out << "\n";
    return faults;
}

// The last lines of a text.
std::string LastLines(const std::string& text, int count)
{
    std::size_t from = text.size();
    for (int lines = 0; from > 0 && lines <= count; ++lines) {
        const std::size_t feed = text.rfind('\n', from - 1);
        if (feed == std::string::npos)
            return text;
        if (lines == count)
            return text.substr(feed + 1);
        from = feed;
    }
    return text.substr(from);
}

// The first field of a form.
IField* FirstField(IPresentationForm& form)
{
    IField* first = nullptr;
    if (auto* container = dynamic_cast<IPresentationBase*>(&form); container && container->GetContainer())
        container->GetContainer()->ForEachElement([&](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element); line && !first && line->GetField())
                first = line->GetField();
        });
    return first;
}

// The console filled past its limit and trimmed; the workspace saved, closed
// and opened again; the help of a field.
int TourConsoleAndWorkspace(KelBrowserWindow& window, const std::string& folder, std::ostream& out)
{
    int faults = 0;
    out << "== Console and workspace\n";
    IOutputWnd* output = window.GetConsole()->GetTabWnd(0);
    for (int i = 0; output && i < IOutputWnd::kMaxItems; ++i)
        output->SetMessage(i % 7 == 0 ? KEL_SEVERITY_PROBLEM : KEL_SEVERITY_INFORMATION,
                           ("Poll " + std::to_string(i) + " of the interfaces' counters done").c_str());
    const int kept = output ? output->GetListCtrl()->topLevelItemCount() : 0;
    out << "  console: " << IOutputWnd::kMaxItems << " messages more, " << kept << " kept\n";
    if (kept <= IOutputWnd::kMaxItems - IOutputWnd::kTrimCount || kept > IOutputWnd::kMaxItems)
        ++faults;
    faults += Save(window, folder, "09-console-full.png", out) ? 0 : 1;

    IWorkspaceManager& workspace = *window.GetWorkspaceManager();
    const std::string file =
        QDir(QString::fromStdString(folder)).absoluteFilePath(QStringLiteral("tour.kws")).toStdString();
    QFile::remove(QString::fromStdString(file));
    // Sizes, not positions: a headless screen moves a window by its frame margins.
    const QSize placed = window.size();
    const int consoleHeight = window.GetConsole()->height();
    const bool written = workspace.SaveWorkspace(file);
    out << "  workspace saved: " << (written ? "tour.kws" : "could not be written") << "\n";
    workspace.OnWorkspaceClose();
    const bool closed = window.GetAttributes() == nullptr;
    window.resize(640, 480);
    const bool reopened = workspace.OpenWorkspace(file);
    QApplication::processEvents();
    const bool same =
        window.GetAttributes() != nullptr && window.size() == placed && window.GetConsole()->height() == consoleHeight;
    out << "  closed: " << (closed ? "yes" : "no") << ", reopened: " << (reopened ? "yes" : "no")
        << ", same windows in the same places: " << (same ? "yes" : "no") << "\n";
    if (!written || !closed || !reopened || !same)
        ++faults;
    faults += Save(window, folder, "10-workspace-reopened.png", out) ? 0 : 1;

    // F1 on a field of the form shows its help.
    if (IField* field = window.GetAttributes() ? FirstField(*window.GetAttributes()) : nullptr)
        faults += SaveFieldHelp(window, *field, folder, "11-help.png", QSize(420, 220), out);
    out << "\n";
    return faults;
}

// What operators of large forms ask for: the filter line narrowing a form.
int TourFilter(KelBrowserWindow& window, const std::string& folder, std::ostream& out)
{
    out << "== a filtered form\n";
    int faults = 0;
    if (!window.OpenForm("Network core Router r1 Interface eth0", "Echo")) {
        out << "  the Echo form did not open\n";
        return 1;
    }
    auto* form = dynamic_cast<IPresentationForm*>(window.GetDocuments()->currentWidget());
    if (!form) {
        out << "  no form is shown\n";
        return 1;
    }
    form->GetFilterBox()->setText(QStringLiteral("ti"));
    QApplication::processEvents();
    int shown = 0;
    form->GetControlContainer()->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element); line && line->IsLineShown())
            ++shown;
    });
    out << "  filter \"ti\": " << shown << " line(s) shown\n";
    faults += Save(window, folder, "12-filtered-form.png", out) ? 0 : 1;
    form->GetFilterBox()->clear();
    out << "\n";

    // A record folded to its one line of text.
    out << "== a folded record\n";
    KELCompositeField* place = nullptr;
    form->GetControlContainer()->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element);
            line && line->GetLabel() && line->GetLabel()->GetPresentationName() == "Place")
            place = dynamic_cast<KELCompositeField*>(line->GetField());
    });
    if (place && place->GetFoldToggle()) {
        place->GetFoldToggle()->click();
        QApplication::processEvents();
        out << "  Place folded: " << (place->IsFolded() ? "yes" : "no") << "\n";
        faults += Save(window, folder, "14-folded-record.png", out) ? 0 : 1;
        place->GetFoldToggle()->click();
    } else {
        out << "  no Place record to fold\n";
        ++faults;
    }
    out << "\n";

    // F1 on a number says its type, range, units, default and access.
    out << "== help that says what a field takes\n";
    if (!window.OpenForm("Network core Router r1 Interface eth0", "Test"))
        return faults + 1;
    if (auto* test = dynamic_cast<IPresentationForm*>(window.GetDocuments()->currentWidget())) {
        IField* timeout = nullptr;
        test->GetControlContainer()->ForEachElement([&](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element);
                line && line->GetLabel() && line->GetLabel()->GetPresentationName() == "Timeout")
                timeout = line->GetField();
        });
        if (timeout) {
            faults += SaveFieldHelp(window, *timeout, folder, "13-help-type-range-units.png", QSize(420, 260), out);
        } else {
            out << "  no Timeout line\n";
            ++faults;
        }
    }
    out << "\n";
    return faults;
}

}  // namespace

int SaveFieldHelp(KelBrowserWindow& window, IField& field, const std::string& folder, const char* picture,
                  const QSize& size, std::ostream& out)
{
    window.activateWindow();
    field.GetWindow()->setFocus();
    QApplication::processEvents();
    window.ShowHelp();
    QApplication::processEvents();
    IHelpDialog* help = GetKELapp()->GetHelpDialog();
    if (!help)
        return 1;
    out << "  help: " << help->GetText().toStdString() << "\n";
    help->resize(size);
    const bool saved = Save(*help, folder, picture, out);
    help->hide();
    return saved ? 0 : 1;
}

int RunTour(KelBrowserWindow& window, const std::string& folder)
{
    QDir().mkpath(QString::fromStdString(folder));
    std::ofstream transcript(folder + "/transcript.txt");
    auto* recorder = new TranscriptPrompt(transcript);
    std::unique_ptr<KELPrompt> previous = KELPrompt::Install(std::unique_ptr<KELPrompt>(recorder));

    const Step steps[] = {
        {"01-test.png", "Network core Router r1 Interface eth0", "Test", {{"Count", "3"}, {"Size", "128"}}, true},
        {"02-echo-every-kind.png",
         "Network core Router r1 Interface eth0",
         "Echo",
         {{"Confirm", "1"},
          {"At", "2026-03-01 12:30:05"},
          {"Ratio", "12.5"},
          {"Weight", "0.75"},
          {"Target", "Network core Router r2"},
          {"Comment", "Checked after the move\nto hall C"},
          {"Outcome", "Mirrored"}},
         true,
         {{"Place", R"({"Site": "Hall C", "Rack": 12, "Position": {"Latitude": 48.85, "Longitude": 2.35}})"},
          {"Peers", R"([{"Host": "r2", "Port": 179, "Transport": "TCP"}, {"Host": "r3", "Port": 646}])"},
          {"States", R"(["Unlocked", "ShuttingDown"])"},
          {"Setting", R"({"attribute": "AdminState", "value": "Locked"})"},
          {"Settings", R"({"Mtu": 9000, "Duplex": "Full"})"}}},
        {"03-echo-required-missing.png",
         "Network core Router r1 Interface eth1",
         "Echo",
         {{"Confirm", ""}, {"Ratio", "3"}},
         false},
        {"04-show-router.png", "Network core Router r1", "Show", {{"Partition", "Status"}}, true},
        {"05-show-every-router.png", "Network core Router *", "Show", {{"Partition", "Status"}}, true},
        {"06-test-exception.png", "Network core Router r1 Interface eth0", "Test", {{"Count", "2000"}}, true},
    };
    int faults = 0;
    window.resize(1000, 760);
    window.show();
    for (const Step& step : steps) {
        transcript << "== " << step.directive << " on " << step.entity << "\n";
        if (!window.OpenForm(step.entity, step.directive) || !window.GetForm()) {
            transcript << "  the form could not be opened\n";
            ++faults;
            continue;
        }
        IInputForm& form = *window.GetForm();
        for (const auto& [name, text] : step.typed)
            if (!Type(form, name, text)) {
                transcript << "  no field \"" << name << "\"\n";
                ++faults;
            }
        for (const auto& [name, json] : step.grown)
            if (!Grow(form, name, json, transcript)) {
                transcript << "  the set \"" << name << "\" could not be grown\n";
                ++faults;
            }
        QApplication::processEvents();
        const bool sent = window.Send() && window.WaitForCalls();
        transcript << "  request: " << (window.GetRequestText().empty() ? "(nothing)" : window.GetRequestText())
                   << "\n";
        transcript << (sent ? window.GetReplyText() : "  not sent\n");
        if (sent != step.sent) {
            transcript << "  expected the request " << (step.sent ? "to go" : "to be refused") << "\n";
            ++faults;
        }
        QApplication::processEvents();
        const std::string picture = folder + "/" + step.picture;
        if (!window.grab().save(QString::fromStdString(picture))) {
            transcript << "  " << picture << " could not be written\n";
            ++faults;
        }
        transcript << "  picture: " << step.picture << "\n";
        // A form taller than the window is shown once more, scrolled to its end.
        if (QScrollBar* scroll = form.verticalScrollBar(); scroll->maximum() > 0) {
            scroll->setValue(scroll->maximum());
            QApplication::processEvents();
            const std::string end = QString::fromLatin1(step.picture).replace(".png", "-end.png").toStdString();
            if (!window.grab().save(QString::fromStdString(folder + "/" + end))) {
                transcript << "  " << end << " could not be written\n";
                ++faults;
            }
            transcript << "  picture: " << end << "\n";
        }
        transcript << "\n";
    }
    faults += TourAttributes(window, folder, transcript);
    faults += TourConsoleAndWorkspace(window, folder, transcript);
    faults += TourFilter(window, folder, transcript);
    // The console holds thousands of messages by now: the last ones tell the story.
    transcript << "== messages (the last ones)\n" << LastLines(window.GetMessages(), 12) << "\n";
    transcript << (faults ? std::to_string(faults) + " step(s) went wrong\n" : "every step went as expected\n");
    KELPrompt::Install(std::move(previous));
    std::cout << "kelbrowser: tour of " << std::size(steps) << " forms in " << folder << "/ ("
              << (faults ? std::to_string(faults) + " fault(s)" : "all as expected") << ")\n";
    return faults ? 1 : 0;
}
