// SPDX-License-Identifier: BSD-3-Clause
// A form of 1,000 lines at the operator's hands, against a plain QFormLayout
// of 1,000 rows: filtering at each keystroke (rows shown or hidden by their
// label), and an edit recorded, undone and redone (a QUndoStack of text
// commands). Aim: under 16 ms each (a frame at 60 Hz).

#include "kel/controls/KELFilterBox.h"
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/KELIdlePass.h"
#include "kel/frame/IApplication.h"
#include "kel/model/IPresentationContainer.h"
#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"

#include "BenchApplication.h"
#include "BenchPair.h"
#include "WideDictionary.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QUndoStack>

#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kLines = 1000;

// KEL with a form of 1,000 defaulted lines, shown; the form goes before KEL does.
class WideForm {
public:
    WideForm()
    {
        EnsureApplication();
        InitializeKEL("kel_bench");
        InstallWideDictionary(kLines);
        form = std::make_unique<IInputForm>(GetKELapp()->DefineNewContext("BENCH"));
        form->resize(800, 600);
        form->CreatePresentation("Wide", TEntitySpec("Box b"), 1);
        form->FillWithDefaults();
        form->show();
        QApplication::processEvents();
        KELIdlePass::RunNow();
    }
    ~WideForm()
    {
        form.reset();
        DestroyKEL();
    }
    WideForm(const WideForm&) = delete;
    WideForm& operator=(const WideForm&) = delete;

    std::unique_ptr<IInputForm> form;
};

// The same lines written by hand.
class PlainForm {
public:
    PlainForm() : inside(new QWidget), layout(new QFormLayout(inside))
    {
        area.resize(800, 600);
        for (int i = 1; i <= kLines; ++i) {
            labels.push_back(QStringLiteral("A%1").arg(i));
            edits.push_back(new QLineEdit(QString::number(i)));
            layout->addRow(new QLabel(labels.back() + QStringLiteral(" :")), edits.back());
        }
        area.setWidget(inside);
        area.show();
        QApplication::processEvents();
    }

    QScrollArea area;
    QWidget* inside;      // the area's
    QFormLayout* layout;  // the inside's
    std::vector<QString> labels;
    std::vector<QLineEdit*> edits;
};

// An operator typing "A12", then taking it back.
constexpr std::array kKeystrokes = {"A", "A1", "A12", "A1", "A", ""};

void Pair_FormFilter1000Lines(benchmark::State& state)
{
    WideForm kel;
    PlainForm plain;
    std::size_t key = 0, plainKey = 0;
    RunPair(
        state,
        [&] {
            kel.form->GetFilterBox()->setText(QString::fromLatin1(kKeystrokes[key++ % kKeystrokes.size()]));
            QApplication::processEvents();
        },
        [&] {
            const QString filter = QString::fromLatin1(kKeystrokes[plainKey++ % kKeystrokes.size()]);
            for (int row = 0; row < kLines; ++row)
                plain.layout->setRowVisible(row,
                                            KELFilterBox::Matches(filter, plain.labels[static_cast<std::size_t>(row)]));
            plain.inside->adjustSize();
            QApplication::processEvents();
        });
}
BENCHMARK(Pair_FormFilter1000Lines)->Unit(benchmark::kMillisecond);

// A text put back by a plain undo stack.
class TextStep : public QUndoCommand {
public:
    TextStep(QLineEdit& edit, QString before, QString after)
        : m_edit(edit), m_before(std::move(before)), m_after(std::move(after))
    {
    }
    void undo() override { m_edit.setText(m_before); }
    void redo() override { m_edit.setText(m_after); }

private:
    QLineEdit& m_edit;
    QString m_before, m_after;
};

void Pair_FormUndo1000Lines(benchmark::State& state)
{
    WideForm kel;
    PlainForm plain;
    auto* line = dynamic_cast<IFormLine*>(kel.form->GetContainer()->FindElement(500));
    auto* edit = qobject_cast<QLineEdit*>(line->GetField()->GetWindow());
    QUndoStack plainStack;
    int round = 0;
    RunPair(
        state,
        [&] {
            // An edit, the idle pass that records it, then undo and redo.
            edit->setText(QString::number(++round));
            KELIdlePass::RunNow();
            kel.form->GetUndoStack()->undo();
            kel.form->GetUndoStack()->redo();
        },
        [&] {
            QLineEdit* target = plain.edits[500];
            plainStack.push(new TextStep(*target, target->text(), QString::number(round)));
            plainStack.undo();
            plainStack.redo();
        });
}
BENCHMARK(Pair_FormUndo1000Lines)->Unit(benchmark::kMillisecond);

}  // namespace
