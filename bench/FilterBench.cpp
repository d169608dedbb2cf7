// A form of 1,000 lines at the operator's hands, against a plain QFormLayout
// of 1,000 rows: filtering at each keystroke (rows shown or hidden by their
// label), and an edit recorded, undone and redone (a QUndoStack of text
// commands). Aim: under 16 ms each (a frame at 60 Hz).

#include "kel/controls/KELFilterBox.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/KELIdlePass.h"
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/frame/IApplication.h"
#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"

#include "BenchApplication.h"
#include "BenchPair.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QUndoStack>

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace {

constexpr int kLines = 1000;

void InstallWideDictionary()
{
    std::string arguments;
    for (int i = 1; i <= kLines; ++i)
        arguments += (i > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(i) + R"(, "name": "A)"
                     + std::to_string(i) + R"(", "type": "Unsigned32", "default": ")" + std::to_string(i) + "\"}";
    const std::string json = R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}],
        "classes": [{"code": 1, "name": "Box", "directives": [{"id": 1, "name": "Wide", "request": [)"
                             + arguments + "]}]}]}";
    ZEDGetApplication()->SetDictionary(TDictionary::Parse(json, "wide.json"));
}

// An operator typing "A12", then taking it back.
constexpr std::array kKeystrokes = {"A", "A1", "A12", "A1", "A", ""};

void Pair_FormFilter1000Lines(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallWideDictionary();
    KELConfigContext* context = GetKELapp()->DefineNewContext("BENCH");
    IInputForm form(context);
    form.resize(800, 600);
    form.CreatePresentation("Wide", TEntitySpec("Box b"), 1);
    form.FillWithDefaults();
    form.show();

    QScrollArea area;
    area.resize(800, 600);
    auto* inside = new QWidget;
    auto* layout = new QFormLayout(inside);
    std::vector<QString> labels;
    for (int i = 1; i <= kLines; ++i) {
        labels.push_back(QStringLiteral("A%1").arg(i));
        layout->addRow(new QLabel(labels.back() + QStringLiteral(" :")), new QLineEdit(QString::number(i)));
    }
    area.setWidget(inside);
    area.show();
    QApplication::processEvents();

    std::size_t key = 0, plainKey = 0;
    RunPair(
        state,
        [&] {
            form.GetFilterBox()->setText(QString::fromLatin1(kKeystrokes[key++ % kKeystrokes.size()]));
            QApplication::processEvents();
        },
        [&] {
            const QString filter = QString::fromLatin1(kKeystrokes[plainKey++ % kKeystrokes.size()]);
            for (int row = 0; row < kLines; ++row)
                layout->setRowVisible(row, KELFilterBox::Matches(filter, labels[static_cast<std::size_t>(row)]));
            inside->adjustSize();
            QApplication::processEvents();
        });
    DestroyKEL();
}
BENCHMARK(Pair_FormFilter1000Lines)->Unit(benchmark::kMillisecond);

// A text put back by a plain undo stack.
class TextStep : public QUndoCommand {
public:
    TextStep(QLineEdit& edit, QString before, QString after) : m_edit(edit), m_before(std::move(before)), m_after(std::move(after)) {}
    void undo() override { m_edit.setText(m_before); }
    void redo() override { m_edit.setText(m_after); }

private:
    QLineEdit& m_edit;
    QString m_before, m_after;
};

void Pair_FormUndo1000Lines(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallWideDictionary();
    KELConfigContext* context = GetKELapp()->DefineNewContext("BENCH");
    IInputForm form(context);
    form.resize(800, 600);
    form.CreatePresentation("Wide", TEntitySpec("Box b"), 1);
    form.FillWithDefaults();
    form.show();
    QApplication::processEvents();
    KELIdlePass::RunNow();
    auto* line = dynamic_cast<IFormLine*>(form.GetContainer()->FindElement(500));
    auto* edit = qobject_cast<QLineEdit*>(line->GetField()->GetWindow());

    QScrollArea area;
    auto* inside = new QWidget;
    auto* layout = new QFormLayout(inside);
    std::vector<QLineEdit*> edits;
    for (int i = 1; i <= kLines; ++i) {
        edits.push_back(new QLineEdit(QString::number(i)));
        layout->addRow(new QLabel(QStringLiteral("A%1 :").arg(i)), edits.back());
    }
    area.setWidget(inside);
    area.show();
    QUndoStack plain;
    QApplication::processEvents();

    int round = 0;
    RunPair(
        state,
        [&] {
            // An edit, the idle pass that records it, then undo and redo.
            edit->setText(QString::number(++round));
            KELIdlePass::RunNow();
            form.GetUndoStack()->undo();
            form.GetUndoStack()->redo();
        },
        [&] {
            QLineEdit* target = edits[500];
            plain.push(new TextStep(*target, target->text(), QString::number(round)));
            plain.undo();
            plain.redo();
        });
    DestroyKEL();
}
BENCHMARK(Pair_FormUndo1000Lines)->Unit(benchmark::kMillisecond);

} // namespace
