// The user filter dialog: presets into the grid, the automatic weight, the 3 x 3 and 5 x 5
// kernels a grid stands for, its messages, .oif files through its buttons, and its menu
// entry, whose OK runs the kernel on the active document as one undo step.
#include "app/filters/fuserfilter.h"

#include "app/fmain.h"
#include "app/globals.h"
#include "app_test_util.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "picture_files.h"
#include "pixel/pixel_test_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <vector>

using namespace ostrivex;
using ostrivex::test::makeBits;
using ostrivex::test::sameBits;
using ostrivex::testing::fileBytes;
using ostrivex::testing::words;

namespace {

QStringList gridTexts(const fUserFilter& d) {
    QStringList out;
    for (QLineEdit* e : d.txtM)
        out << e->text();
    return out;
}

// 25 cell texts from a list of (cell, value) pairs; every other cell "0".
QStringList grid(std::initializer_list<std::pair<int, int>> cells) {
    QStringList out;
    for (int i = 0; i < 25; ++i)
        out << "0";
    for (auto [i, v] : cells)
        out[i] = QString::number(v);
    return out;
}

void setGrid(fUserFilter& d, const QStringList& texts) {
    for (int i = 0; i < 25; ++i)
        d.txtM[i]->setText(texts[i]);
}

// Types into a field as the user does (replacing its text), so its edit signals fire.
void typeInto(QLineEdit* e, const QString& text) {
    e->selectAll();
    if (text.isEmpty())
        QTest::keyClick(e, Qt::Key_Backspace);
    else
        QTest::keyClicks(e, text);
}

// Every test starts from the first opening's state and answers the dialogs itself; the
// messages shown are collected.
class UserFilterTest : public ostrivex::testing::FreshHome {
  protected:
    void SetUp() override {
        FreshHome::SetUp();
        fUserFilter::Last = fUserFilter::Initial();
        saved_ = {DocumentDialogs::Inform, DocumentDialogs::AskSaveName,
                  DocumentDialogs::AskOpenName};
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString& title) {
            messages << text;
            titles << title;
        };
        DocumentDialogs::AskSaveName = [this](QWidget*, const QString& title, const QString& folder,
                                              const QString& filter, const QString&) {
            asked << title + " in " + folder + " for " + filter;
            return answer;
        };
        DocumentDialogs::AskOpenName = [this](QWidget*, const QString& title, const QString& folder,
                                              const QString& filter) {
            asked << title + " in " + folder + " for " + filter;
            return answer;
        };
    }
    void TearDown() override {
        DocumentDialogs::Inform = std::get<0>(saved_);
        DocumentDialogs::AskSaveName = std::get<1>(saved_);
        DocumentDialogs::AskOpenName = std::get<2>(saved_);
    }

    QStringList messages, titles, asked;
    QString answer; // the path the file dialogs give
    std::tuple<decltype(DocumentDialogs::Inform), decltype(DocumentDialogs::AskSaveName),
               decltype(DocumentDialogs::AskOpenName)>
        saved_;
};

TEST_F(UserFilterTest, PresetsFillTheGridWeightAndBiases) {
    fUserFilter d(home());
    EXPECT_EQ(d.windowTitle(), "User Defined Filters");
    // The first opening: the kernel that changes nothing.
    EXPECT_EQ(gridTexts(d), grid({{12, 1}}));
    EXPECT_EQ(d.txtWeight->text(), "1");
    EXPECT_EQ(d.cbBased->currentText(), "<None>");
    ASSERT_EQ(d.cbBased->count(), 15);
    EXPECT_EQ(d.cbBased->itemText(1), "Blur");
    EXPECT_EQ(d.cbBased->itemText(7), "Bump [NW]");
    EXPECT_EQ(d.cbBased->itemText(14), "Engrave [SE]");

    // "Sharpen" (preset 4, list entry 5): the 3 x 3 kernel in the centre cells.
    d.cbBased->setCurrentIndex(5);
    EXPECT_EQ(gridTexts(d), grid({{6, -1}, {7, -1}, {8, -1}, {11, -1}, {12, 15}, {13, -1},
                                  {16, -1}, {17, -1}, {18, -1}}));
    EXPECT_EQ(d.txtWeight->text(), "7");
    for (int c = 0; c < 3; ++c)
        EXPECT_EQ(d.txtAdd[c]->text(), "0");

    // "Blur more" fills all 25 cells.
    d.cbBased->setCurrentIndex(2);
    EXPECT_EQ(gridTexts(d), QStringList(25, "1"));
    EXPECT_EQ(d.txtWeight->text(), "25");

    // "Emboss [SE]" with the automatic weight on: its weight 1 stands (its cells sum to 0),
    // its biases reach the up-down controls, and the outer ring of "Blur more" is cleared.
    d.chkAuto->setChecked(true);
    EXPECT_EQ(d.txtWeight->text(), "25"); // ticking follows the sum at once
    d.cbBased->setCurrentIndex(13);
    EXPECT_EQ(gridTexts(d), grid({{12, 1}, {18, -1}}));
    EXPECT_EQ(d.txtWeight->text(), "1");
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(d.txtAdd[c]->text(), "128");
        EXPECT_EQ(d.txtAddUD[c]->value(), 128);
    }

    // An edit, then "Emboss [SE]" picked again from the list: the preset comes back.
    typeInto(d.txtM[0], "4");
    emit d.cbBased->activated(13);
    EXPECT_EQ(gridTexts(d), grid({{12, 1}, {18, -1}}));

    // "<None>" leaves the fields alone.
    d.cbBased->setCurrentIndex(0);
    EXPECT_EQ(gridTexts(d), grid({{12, 1}, {18, -1}}));
    EXPECT_EQ(d.txtWeight->text(), "1");
}

TEST_F(UserFilterTest, AutomaticWeightFollowsEveryEdit) {
    fUserFilter d(home());
    // Off: an edit leaves the weight.
    typeInto(d.txtM[0], "3");
    EXPECT_EQ(d.txtM[0]->text(), "3");
    EXPECT_EQ(d.txtWeight->text(), "1");
    // On: the sum of all 25 cells at once, then after each edit; an empty cell counts 0.
    d.chkAuto->setChecked(true);
    EXPECT_EQ(d.txtWeight->text(), "4");
    typeInto(d.txtM[24], "-2");
    EXPECT_EQ(d.txtWeight->text(), "2");
    typeInto(d.txtM[12], "-9");
    EXPECT_EQ(d.txtWeight->text(), "-8");
    typeInto(d.txtM[24], "");
    EXPECT_EQ(d.txtWeight->text(), "-6");
    // The cells take no letters.
    typeInto(d.txtM[7], "x");
    EXPECT_EQ(d.txtM[7]->text(), "0");
    EXPECT_EQ(d.txtWeight->text(), "-6");

    // Biases typed past 0..255 show the end they passed; the up-down control follows, and
    // stepping it writes the field.
    typeInto(d.txtAdd[0], "300");
    EXPECT_EQ(d.txtAdd[0]->text(), "255");
    EXPECT_EQ(d.txtAddUD[0]->value(), 255);
    typeInto(d.txtAdd[1], "-5");
    EXPECT_EQ(d.txtAdd[1]->text(), "0");
    typeInto(d.txtAdd[2], "77");
    EXPECT_EQ(d.txtAddUD[2]->value(), 77);
    d.txtAddUD[2]->setValue(78);
    EXPECT_EQ(d.txtAdd[2]->text(), "78");
}

TEST_F(UserFilterTest, TheGridMakesA3x3OrA5x5Kernel) {
    fUserFilter d(home());
    d.txtWeight->setText("-3");
    d.txtAdd[0]->setText("1");
    d.txtAdd[1]->setText("2");
    d.txtAdd[2]->setText("3");

    // Only inner cells: the inner nine.
    setGrid(d, grid({{6, 1}, {12, 2}, {18, 3}, {8, -4}}));
    FilterMask r;
    ASSERT_TRUE(d.BuildRecord(r));
    EXPECT_EQ(r.Mask, MaskArray({{1, 0, -4}, {0, 2, 0}, {0, 0, 3}}));
    EXPECT_EQ((std::array{r.Div, r.BiasR, r.BiasG, r.BiasB}), (std::array{-3, 1, 2, 3}));

    // One cell of the outer ring, on any of its four sides, makes all 25 the kernel.
    setGrid(d, grid({{6, 1}, {12, 2}, {4, 5}}));
    ASSERT_TRUE(d.BuildRecord(r));
    EXPECT_EQ(r.Mask, MaskArray({{0, 0, 0, 0, 5}, {0, 1, 0, 0, 0}, {0, 0, 2, 0, 0},
                                 {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}}));
    for (int cell : {2, 10, 14, 22}) {
        setGrid(d, grid({{cell, 7}}));
        ASSERT_TRUE(d.BuildRecord(r));
        ASSERT_EQ(r.size(), 5) << cell;
        EXPECT_EQ(r.Mask[size_t(cell / 5)][size_t(cell % 5)], 7) << cell;
    }
    EXPECT_TRUE(messages.isEmpty());

    // All zero: the message, and no record. A cell that is no number counts as 0 there...
    const FilterMask before = r;
    setGrid(d, grid({}));
    d.txtM[3]->setText("+");
    EXPECT_FALSE(d.BuildRecord(r));
    // ...and fails as a number once the grid is not blank; so do the other fields.
    d.txtM[12]->setText("1");
    EXPECT_FALSE(d.BuildRecord(r));
    d.txtM[3]->setText("0");
    d.txtWeight->setText("");
    EXPECT_FALSE(d.BuildRecord(r));
    d.txtWeight->setText("9999999999"); // past 32 bits
    EXPECT_FALSE(d.BuildRecord(r));
    d.txtWeight->setText("1");
    d.txtAdd[1]->setText("-");
    EXPECT_FALSE(d.BuildRecord(r));
    EXPECT_EQ(r, before);
    EXPECT_EQ(messages, QStringList{"Invalid/blank mask. Verify coeficients."} +
                            QStringList(4, "Every field must hold a whole number."));
    EXPECT_EQ(titles.first(), "User Defined Filters");
}

TEST_F(UserFilterTest, OkChecksTheFieldsAndIsRememberedForTheNextOpening) {
    {
        fUserFilter d(home());
        setGrid(d, grid({}));
        d.cmdOK->click();
        EXPECT_FALSE(d.applied());
        d.txtM[0]->setText("2");
        d.txtWeight->setText("0");
        d.cmdOK->click();
        EXPECT_FALSE(d.applied());
        EXPECT_EQ(messages, QStringList({"Invalid/blank mask. Verify coeficients.",
                                         "The weight can't be 0."}));
        d.txtWeight->setText("5");
        d.txtAdd[2]->setText("9");
        d.chkKeepMargins->setChecked(true);
        d.cbBased->setCurrentIndex(0);
        d.cmdOK->click();
        ASSERT_TRUE(d.applied());
        EXPECT_EQ(d.result(), QDialog::Accepted);
        EXPECT_EQ(d.record().size(), 5);
        EXPECT_EQ(d.record().Mask[0][0], 2);
        EXPECT_EQ(d.record().Div, 5);
        EXPECT_EQ(d.record().BiasB, 9);
        EXPECT_TRUE(d.keepMargins());
    }
    {
        // The next opening shows the last OK; Cancel keeps nothing.
        fUserFilter d(home());
        EXPECT_EQ(gridTexts(d), grid({{0, 2}}));
        EXPECT_EQ(d.txtWeight->text(), "5");
        EXPECT_EQ(d.txtAdd[2]->text(), "9");
        EXPECT_TRUE(d.chkKeepMargins->isChecked());
        d.cbBased->setCurrentIndex(1);
        d.cmdCancel->click();
        EXPECT_FALSE(d.applied());
    }
    fUserFilter d(home());
    EXPECT_EQ(gridTexts(d), grid({{0, 2}}));
    EXPECT_EQ(d.cbBased->currentIndex(), 0);
}

TEST_F(UserFilterTest, FilesSaveAndLoadThroughTheButtons) {
    const QString folder = home() + "/Filters";
    fUserFilter d(folder);

    // A 3 x 3 kernel: rows 1 2 3 / 4 5 6 / 7 8 -1 in the centre cells.
    const QStringList small =
        grid({{6, 1}, {7, 2}, {8, 3}, {11, 4}, {12, 5}, {13, 6}, {16, 7}, {17, 8}, {18, -1}});
    setGrid(d, small);
    d.txtWeight->setText("300");
    d.txtAdd[0]->setText("255");
    d.txtAdd[1]->setText("0");
    d.txtAdd[2]->setText("17");
    answer = folder + "/small"; // typed without the extension
    d.cmdSave->click();
    EXPECT_EQ(asked,
              QStringList({"Save filter in " + folder + " for Ostrivex filter (*.oif)|*.oif"}));
    EXPECT_TRUE(QDir(folder).exists()); // made for the dialog
    // Header (2 dimensions, 3 from 0, 3 from 0), the cells with the row running fastest,
    // then weight and red, green, blue biases.
    const QByteArray dims("\x02\x00", 2);
    const QByteArray expected =
        dims + words({3, 0, 3, 0, 1, 4, 7, 2, 5, 8, 3, 6, -1, 300, 255, 0, 17});
    ASSERT_EQ(expected.size(), 70);
    EXPECT_EQ(fileBytes(folder + "/small.oif"), expected);

    // A 5 x 5 kernel.
    const QStringList big = grid({{0, 2}, {1, 7}, {12, 9}, {24, -3}});
    setGrid(d, big);
    d.txtWeight->setText("-1");
    d.txtAdd[0]->setText("0");
    answer = folder + "/big.oif";
    d.cmdSave->click();
    // Cell (row, column) is number column * 5 + row of the file's 25.
    std::vector<int32_t> cells(25, 0);
    cells[0] = 2, cells[1 * 5 + 0] = 7, cells[2 * 5 + 2] = 9, cells[4 * 5 + 4] = -3;
    const QByteArray bigFile = dims + words({5, 0, 5, 0}) + words(cells) + words({-1, 0, 0, 17});
    ASSERT_EQ(bigFile.size(), 134);
    EXPECT_EQ(fileBytes(answer), bigFile);

    // Load into a dialog showing a preset: the same fields come back, and the list says no
    // preset.
    fUserFilter e(folder);
    e.cbBased->setCurrentIndex(9);
    asked.clear();
    e.cmdLoad->click();
    EXPECT_EQ(asked,
              QStringList({"Load filter in " + folder + " for Ostrivex filter (*.oif)|*.oif"}));
    EXPECT_EQ(gridTexts(e), big);
    EXPECT_EQ(e.txtWeight->text(), "-1");
    EXPECT_EQ(e.txtAdd[0]->text(), "0");
    EXPECT_EQ(e.txtAdd[2]->text(), "17");
    EXPECT_EQ(e.txtAddUD[2]->value(), 17);
    EXPECT_EQ(e.cbBased->currentIndex(), 0);
    answer = folder + "/small.oif";
    e.cmdLoad->click();
    EXPECT_EQ(gridTexts(e), small);
    EXPECT_EQ(e.txtWeight->text(), "300");
    EXPECT_EQ(e.txtAdd[0]->text(), "255");
    EXPECT_TRUE(messages.isEmpty());

    // Cancelled file dialogs do nothing; a blank grid is not saved (its message, no dialog).
    answer.clear();
    e.cmdLoad->click();
    EXPECT_EQ(e.txtWeight->text(), "300");
    asked.clear();
    setGrid(e, grid({}));
    e.cmdSave->click();
    EXPECT_TRUE(asked.isEmpty());
    EXPECT_EQ(messages, QStringList({"Invalid/blank mask. Verify coeficients."}));
}

TEST_F(UserFilterTest, ADamagedFileChangesNothing) {
    const QString folder = home() + "/Filters";
    QDir().mkpath(folder);
    // A good 3 x 3 file cut one byte short, one that claims 4 x 4, and a missing one.
    const QByteArray dims("\x02\x00", 2);
    const QByteArray good = dims + words({3, 0, 3, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 9, 0, 0, 0});
    const QByteArray four = dims + words({4, 0, 4, 0}) + words({1}).repeated(16 + 4);
    const QStringList paths{folder + "/short.oif", folder + "/four.oif", folder + "/none.oif"};
    ASSERT_TRUE(ostrivex::testing::writeText(paths[0], good.left(69)));
    ASSERT_TRUE(ostrivex::testing::writeText(paths[1], four));

    fUserFilter d(folder);
    d.cbBased->setCurrentIndex(11); // "Contour [soft]"
    const QStringList before = gridTexts(d);
    for (const QString& path : paths) {
        answer = path;
        d.cmdLoad->click();
    }
    EXPECT_EQ(messages, QStringList(3, "Invalid filter file."));
    EXPECT_EQ(gridTexts(d), before);
    EXPECT_EQ(d.txtWeight->text(), "1");
    EXPECT_EQ(d.txtAdd[1]->text(), "255");
    EXPECT_EQ(d.cbBased->currentIndex(), 11);
    // The good file itself loads.
    ASSERT_TRUE(ostrivex::testing::writeText(folder + "/good.oif", good));
    EXPECT_TRUE(d.LoadFilterFrom(folder + "/good.oif"));
    EXPECT_EQ(d.txtWeight->text(), "9");
}

// The menu entry on the main window.
class UserFilterCommandTest : public UserFilterTest {
  protected:
    void SetUp() override {
        UserFilterTest::SetUp();
        ostrivex::testing::ResetProgramGlobals();
        main_ = std::make_unique<fMain>();
    }
    void TearDown() override {
        main_.reset();
        UserFilterTest::TearDown();
    }
    // Opens the dialog from its menu entry; `answerIt` fills it in and presses its buttons.
    void runFromMenu(std::function<void(fUserFilter*)> answerIt) {
        bool seen = false;
        ostrivex::testing::answerNextModal([&](QWidget* w) {
            auto* d = qobject_cast<fUserFilter*>(w);
            ASSERT_NE(d, nullptr);
            seen = true;
            answerIt(d);
        });
        main_->action(*FindMenuEntry("mnuFilters2", "User Defined Filters..."))->trigger();
        EXPECT_TRUE(seen);
        EXPECT_EQ(main_->LastRoute(), "UserFilters");
    }
    std::unique_ptr<fMain> main_;
};

TEST_F(UserFilterCommandTest, OkRunsTheKernelOnceAsOneUndoStep) {
    // Blue, green, red of a 3 x 2 image.
    const Bits original = makeBits(
        3, 2,
        {{40, 100, 0}, {80, 0, 200}, {120, 50, 30}, {0, 20, 60}, {4, 8, 12}, {200, 250, 100}});
    fImage* doc = ostrivex::testing::OpenDocument(*main_, original);
    const int32_t position = doc->HistoryPosition();

    // A blank grid and a weight of 0 keep the dialog open with their messages; Cancel
    // then leaves pixels and history alone.
    bool stillOpen = false;
    runFromMenu([&](fUserFilter* d) {
        setGrid(*d, grid({}));
        d->cmdOK->click();
        d->txtM[12]->setText("1");
        d->txtWeight->setText("0");
        d->cmdOK->click();
        stillOpen = d->isVisible();
        d->cmdCancel->click();
    });
    EXPECT_TRUE(stillOpen);
    EXPECT_EQ(messages,
              QStringList({"Invalid/blank mask. Verify coeficients.", "The weight can't be 0."}));
    EXPECT_TRUE(sameBits(original, doc->bits()));
    EXPECT_EQ(doc->HistoryPosition(), position);

    // Out = bias + (2 * C + right + below) \ 4, with black past the edges (no margins
    // kept); red bias 10.
    runFromMenu([&](fUserFilter* d) {
        setGrid(*d, grid({{12, 2}, {13, 1}, {17, 1}}));
        d->txtWeight->setText("4");
        d->txtAdd[0]->setText("10");
        d->cmdOK->click();
    });
    const Bits expected = makeBits(
        3, 2,
        {{40, 55, 75}, {71, 14, 120}, {110, 87, 50}, {1, 12, 43}, {52, 66, 41}, {100, 125, 60}});
    EXPECT_TRUE(sameBits(expected, doc->bits()));
    EXPECT_TRUE(sameBits(expected, main_->Filter().bits()));
    EXPECT_EQ(doc->HistoryPosition(), position + 1);
    EXPECT_EQ(doc->History().ActionNames[size_t(position)], "User's Filter");
    EXPECT_EQ(main_->statusPanel("Status"), "User's Filter");
    EXPECT_EQ(messages.size(), 2);

    // Undone, and again with the margins kept: no 3 x 3 window fits in two rows, so no
    // pixel changes, and the step is still made.
    main_->MenuExec("UNDO");
    ASSERT_TRUE(sameBits(original, doc->bits()));
    runFromMenu([&](fUserFilter* d) {
        EXPECT_EQ(d->txtWeight->text(), "4"); // the last OK's fields
        d->chkKeepMargins->setChecked(true);
        d->cmdOK->click();
    });
    EXPECT_TRUE(sameBits(original, doc->bits()));
    EXPECT_EQ(doc->History().ActionNames[size_t(position)], "User's Filter");

    // A kernel whose sums pass 32 bits: its message, no change, no step.
    const int32_t afterSteps = doc->HistoryPosition();
    runFromMenu([&](fUserFilter* d) {
        setGrid(*d, grid({{12, 2000000000}}));
        d->txtWeight->setText("1");
        d->chkKeepMargins->setChecked(false);
        d->cmdOK->click();
    });
    EXPECT_EQ(messages.last(), "The filter's sums are too large. Use smaller coefficients.");
    EXPECT_TRUE(sameBits(original, doc->bits()));
    EXPECT_EQ(doc->HistoryPosition(), afterSteps);
}

TEST_F(UserFilterCommandTest, OpensWithoutADocumentAndOkAppliesNothing) {
    const QString status = main_->statusPanel("Status");
    runFromMenu([&](fUserFilter* d) {
        d->cbBased->setCurrentIndex(1);
        d->cmdOK->click();
    });
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_TRUE(main_->Documents().empty());
    EXPECT_EQ(main_->statusPanel("Status"), status);
    // Its file dialogs start in the program's Filters folder.
    runFromMenu([&](fUserFilter* d) {
        answer.clear();
        d->cmdLoad->click();
        d->cmdCancel->click();
    });
    EXPECT_EQ(asked, QStringList({"Load filter in " + QString::fromStdString(AppFolder()) +
                                  "/Filters for Ostrivex filter (*.oif)|*.oif"}));
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
