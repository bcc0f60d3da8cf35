// The three text dialogs: their captions, the live redraw, the grips, what they hand to the
// layer sink (new and edited), and files that do not load.
#include "document/dialogs.h"
#include "imagefile/imagefile.h"
#include "text/f3d.h"
#include "text/flayertext.h"
#include "text/layercanvas.h"
#include "text/logoman.h"
#include "text/text_test_util.h"
#include "text/textcontrols.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

struct FakeSink : TextLayerSink {
    struct Call {
        int32_t layer; // 0 for a new layer
        FinishedText text;
    };
    std::vector<Call> calls;
    void AddTextLayer(const FinishedText& t) override { calls.push_back({0, t}); }
    void UpdateTextLayer(int32_t layer, const FinishedText& t) override {
        calls.push_back({layer, t});
    }
};

class TextDialogs : public ::testing::Test {
  protected:
    void SetUp() override {
        savedInform_ = DocumentDialogs::Inform;
        DocumentDialogs::Inform = [this](QWidget*, const QString& text, const QString&) {
            messages.push_back(text);
        };
        savedFolder_ = TextDialogHooks::TexturesFolder;
        ASSERT_TRUE(textures_.isValid());
        TextDialogHooks::TexturesFolder = [this] { return textures_.path(); };
    }
    void TearDown() override {
        DocumentDialogs::Inform = savedInform_;
        TextDialogHooks::TexturesFolder = savedFolder_;
    }
    // A small picture file in the textures folder.
    QString texture(const QString& name, QColor colour, const char* format = nullptr) {
        QImage img(4, 3, QImage::Format_RGB32);
        img.fill(colour);
        const QString path = textures_.path() + '/' + name;
        EXPECT_TRUE(img.save(path, format));
        return path;
    }

    FakeSink sink;
    std::vector<QString> messages;
    QTemporaryDir textures_;

  private:
    decltype(DocumentDialogs::Inform) savedInform_;
    decltype(TextDialogHooks::TexturesFolder) savedFolder_;
};

// A left-button drag of a widget by (dx, dy).
void drag(QWidget* w, int dx, int dy) {
    const QPointF local(3, 3), global = w->mapToGlobal(local);
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(w, &press);
    QMouseEvent move(QEvent::MouseMove, local + QPointF(dx, dy), global + QPointF(dx, dy),
                     Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(w, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, local + QPointF(dx, dy),
                        global + QPointF(dx, dy), Qt::LeftButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(w, &release);
}

} // namespace

TEST_F(TextDialogs, NewTextLayerRedrawsAndCreates) {
    fLayerText d(nullptr, &sink);
    EXPECT_EQ(d.windowTitle(), "New Text Layer");
    EXPECT_EQ(d.txtLayerText->text(), "Your Text Here");
    EXPECT_EQ(d.cmdOK->text(), "Create");
    EXPECT_EQ(d.Command1->text(), "Cancel");
    ASSERT_EQ(d.cStyle->count(), 4);
    EXPECT_EQ(d.cStyle->itemText(3), "Both");
    d.cFonts->setCurrentText(TestFontFamily);
    ASSERT_EQ(d.cFonts->currentText(), TestFontFamily);
    // Every change redraws: the text, a list typed into, a toggle.
    d.txtLayerText->setText("Quick");
    EXPECT_EQ(d.layerPicture(), DrawStyleTextLayer(d.settings()));
    const Bits before = d.layerPicture();
    d.cboDepthT->setCurrentText("5");
    EXPECT_EQ(d.settings().depth, 5);
    EXPECT_NE(d.layerPicture(), before);
    d.cBold->setChecked(true);
    EXPECT_EQ(d.layerPicture(), DrawStyleTextLayer(d.settings()));
    // The corner grip makes the layer larger, and it is drawn at the new size.
    QWidget* corner = d.canvas->findChild<QWidget*>("Grip2");
    ASSERT_TRUE(corner);
    drag(corner, 30, 20);
    EXPECT_EQ(d.layerPicture().width(), 450);
    EXPECT_EQ(d.layerPicture().height(), 120);
    // Create hands the picture and the record on, once.
    d.cmdSetTransparent->click(); // the key follows the background
    d.cmdOK->click();
    ASSERT_EQ(sink.calls.size(), 1u);
    EXPECT_EQ(sink.calls[0].layer, 0);
    EXPECT_EQ(sink.calls[0].text.picture, DrawStyleTextLayer(d.settings()));
    EXPECT_EQ(sink.calls[0].text.record, StyleTextRecord(d.settings()));
    EXPECT_EQ(sink.calls[0].text.record.LayerText, "Quick");
    EXPECT_EQ(sink.calls[0].text.transparentColor, 0xFFFFFF);
    EXPECT_EQ(d.result(), QDialog::Accepted);
    // Cancel hands nothing on.
    fLayerText c(nullptr, &sink);
    c.Command1->click();
    EXPECT_EQ(sink.calls.size(), 1u);
}

TEST_F(TextDialogs, EditingALayerBringsItsRecordBack) {
    TextRecord r;
    r.LayerType = TextRecord::StyleText;
    r.LayerText = "Again";
    r.StyleValues = {0x112233, 0x445566, 30, 12, 4, 8, 3};
    r.FontName = TestFontFamily;
    r.FontSize = 13.5f;
    r.ForeColor = 0x0000FF;
    r.FontItalic = true;
    fLayerText d(nullptr, &sink);
    d.LoadDataFromLayer(r, 5, QSize(200, 80));
    EXPECT_EQ(d.layerPicture().width(), 200);
    d.cmdOK->click();
    ASSERT_EQ(sink.calls.size(), 1u);
    EXPECT_EQ(sink.calls[0].layer, 5);
    EXPECT_EQ(sink.calls[0].text.record, r);
    // A style index past the list keeps the layer blank, in its background.
    r.StyleValues[TextRecord::StyleIndex] = 7;
    fLayerText blank(nullptr, &sink);
    blank.LoadDataFromLayer(r, 6, QSize(60, 30));
    EXPECT_EQ(blank.layerPicture(), Filled(60, 30, 0xFFFFFF));
}

TEST_F(TextDialogs, ThreeDTextControlsAndTextures) {
    texture("a.gif", Qt::red, "PNG"); // read by content
    texture("b.BMP", Qt::green, "BMP");
    texture("c.png", Qt::blue, "PNG");
    texture("d.jpg", Qt::yellow, "JPG");
    QFile bad(textures_.path() + "/e.jpg");
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("not a picture");
    bad.close();

    f3D d(nullptr, &sink);
    EXPECT_EQ(d.windowTitle(), "3D Text");
    EXPECT_EQ(d.Text1->text(), "Your Text Here");
    EXPECT_EQ(d.Command1->text(), "Switch colors");
    EXPECT_EQ(d.Check4->text(), "With texture");
    EXPECT_EQ(d.cmdApply->text(), "Apply");
    EXPECT_EQ(d.Command2->text(), "Save As");
    EXPECT_EQ(d.CmdCancel->text(), "Cancel");
    d.Combo1->setCurrentText(TestFontFamily);
    // The list shows the gif, bmp and jpg files, whatever their case.
    QStringList listed;
    for (int i = 0; i < d.File1->count(); ++i)
        listed << d.File1->item(i)->text();
    EXPECT_EQ(listed, (QStringList{"a.gif", "b.BMP", "d.jpg", "e.jpg"}));
    // The thickness slider never gives 0.
    d.HScroll1->setValue(0);
    EXPECT_EQ(d.settings().thickness, 1);
    // Switch colors.
    const Text3DSettings s0 = d.settings();
    d.Command1->click();
    EXPECT_EQ(d.settings().colour1, s0.colour2);
    EXPECT_EQ(d.settings().colour2, s0.colour1);
    EXPECT_EQ(d.layerPicture(), Draw3DTextLayer(d.settings()));
    // A texture that loads textures the front face; one that does not says so and keeps
    // the texture there was.
    d.HS1[3]->setValue(0); // the second colour pure red
    d.HS1[4]->setValue(0);
    d.HS1[5]->setValue(255);
    d.Check4->setChecked(true);
    d.File1->setCurrentRow(1);
    EXPECT_EQ(CountColour(d.layerPicture(), packColour(0, 0, 255)), 0);
    EXPECT_GT(CountColour(d.layerPicture(), packColour(0, 255, 0)), 50);
    d.File1->setCurrentRow(3);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].startsWith(f3D::kTextureLoadText));
    EXPECT_GT(CountColour(d.layerPicture(), packColour(0, 255, 0)), 50);
    // Apply: a 3D text record.
    d.cmdApply->click();
    ASSERT_EQ(sink.calls.size(), 1u);
    const TextRecord& r = sink.calls[0].text.record;
    EXPECT_EQ(r.LayerType, TextRecord::Text3D);
    EXPECT_EQ(r.StyleValues[TextRecord::SecondColour], 0xFF0000);
    EXPECT_EQ(r.StyleValues[TextRecord::Thickness], 1);
    // Editing: the record's values come back; a thickness past the slider is held to it.
    TextRecord edit = r;
    edit.StyleValues[TextRecord::Thickness] = 1000;
    edit.StyleValues[TextRecord::Horizontal] = -40;
    f3D e(nullptr, &sink);
    e.LoadDataFromLayer(edit, 2, QSize(300, 100));
    EXPECT_EQ(e.settings().horizontal, -40);
    EXPECT_EQ(e.settings().thickness, e.HScroll1->maximum());
    EXPECT_EQ(e.settings().colour2, 0xFF0000);
}

TEST_F(TextDialogs, LogoMakerCaptionsEffectsAndInsert) {
    texture("Tile.bmp", QColor(10, 20, 30), "BMP");
    LogoMan d(nullptr, &sink);
    EXPECT_EQ(d.windowTitle(), "Style Text");
    EXPECT_EQ(d.Text1->text(), "Sample");
    EXPECT_EQ(d.Text1->toolTip(), "Type Text in here");
    EXPECT_EQ(d.ChkAlias->text(), "Anti Alias");
    EXPECT_EQ(d.ChkAlias->toolTip(), "Softter Fonts");
    EXPECT_EQ(d.OptTab2[0]->toolTip(), "Use a Backgoundpicture");
    EXPECT_EQ(d.CboGrStyle[0]->itemText(2), "Vertikal");
    EXPECT_EQ(d.CmdBend[1]->text(), "Bend Horizental");
    EXPECT_EQ(d.CmdHover->toolTip(), "Windows calls this Shadow");
    EXPECT_EQ(d.ChkBorder->toolTip(), "Border arround the Font");
    EXPECT_EQ(d.CmdOK->text(), "Insert Layer");
    EXPECT_EQ(d.Command2->text(), "Save As..");
    ASSERT_EQ(d.TextureButtons.size(), 1u); // the folder's one picture
    d.CboName->setCurrentText(TestFontFamily);
    EXPECT_EQ(d.picture(), DrawLogo(d.settings()).picture);
    // An effect works on the drawn logo; "Undo All" draws it anew.
    d.ApplyFX(int(LogoFX::Monochrome));
    Bits grey = DrawLogo(d.settings()).picture;
    ApplyLogoFX(grey, LogoFX::Monochrome);
    EXPECT_EQ(d.picture(), grey);
    d.CmdShadow->click();
    EXPECT_NE(d.picture(), grey);
    d.CmdRedraw->click();
    EXPECT_EQ(d.picture(), DrawLogo(d.settings()).picture);
    // A fixed texture picked fills the letters.
    d.TextureButtons[0]->click();
    EXPECT_TRUE(d.OptTab0[0]->isChecked());
    EXPECT_GT(CountColour(d.picture(), packColour(10, 20, 30)), 100);
    // The backlight follows the light, only while it is on.
    const Bits lit0 = d.picture();
    d.MoveLight(QPoint(5, 5));
    EXPECT_EQ(d.picture(), lit0);
    d.ChkLight->setChecked(true);
    d.ChkReal->setChecked(true); // in front: the dark letters light up (white cannot)
    d.MoveLight(QPoint(5, 5));
    EXPECT_NE(d.picture(), lit0);
    d.ChkLight->setChecked(false);
    EXPECT_EQ(d.picture(), lit0);
    // An empty text: the background only, and the layer is named "No Text". No colour
    // key unless one is set.
    d.Text1->clear();
    EXPECT_EQ(d.picture(), DrawLogo(d.settings()).background);
    d.CmdOK->click();
    ASSERT_EQ(sink.calls.size(), 1u);
    EXPECT_EQ(sink.calls[0].text.name, "No Text");
    EXPECT_EQ(sink.calls[0].text.transparentColor, -1);
    EXPECT_EQ(sink.calls[0].text.record.LayerType, TextRecord::ShadowText);
    // Editing a logo layer: text, font and size come back.
    TextRecord r;
    r.LayerType = TextRecord::ShadowText;
    r.LayerText = "Shine";
    r.FontName = TestFontFamily;
    r.StyleValues[TextRecord::LogoFontSize] = 30;
    LogoMan e(nullptr, &sink);
    e.LoadDataFromLayer(r, 3);
    e.SetTransparentColour(0x00FF00);
    EXPECT_EQ(e.settings().text, "Shine");
    EXPECT_EQ(e.settings().fontSize, 30);
    e.CmdOK->click();
    ASSERT_EQ(sink.calls.size(), 2u);
    EXPECT_EQ(sink.calls[1].layer, 3);
    EXPECT_EQ(sink.calls[1].text.name, "Shine");
    EXPECT_EQ(sink.calls[1].text.transparentColor, 0x00FF00);
    EXPECT_EQ(sink.calls[1].text.record.LayerText, "Shine");
    // A background picture that does not load says so.
    EXPECT_FALSE(e.LoadBackgroundFile(textures_.path() + "/missing.jpg"));
    EXPECT_EQ(messages.size(), 1u);
}

TEST_F(TextDialogs, SaveAsWritesThePicture) {
    const QString target = textures_.path() + "/logo.png";
    auto saved = DocumentDialogs::AskSaveName;
    QString filter;
    DocumentDialogs::AskSaveName = [&](QWidget*, const QString&, const QString&, const QString& f,
                                       const QString&) {
        filter = f;
        return target;
    };
    LogoMan d(nullptr, &sink);
    d.CboName->setCurrentText(TestFontFamily);
    d.Command2->click();
    DocumentDialogs::AskSaveName = saved;
    EXPECT_EQ(filter, QString::fromLatin1(kSaveFilter));
    const QImage back(target);
    ASSERT_FALSE(back.isNull());
    EXPECT_EQ(back.size(), QSize(d.picture().width(), d.picture().height()));
    EXPECT_EQ(back.pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_TRUE(sink.calls.empty()); // saving is not inserting
}
