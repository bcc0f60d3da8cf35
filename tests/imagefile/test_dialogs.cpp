// The New Document, Image Properties and open dialogs, driven as a user drives them.
#include "imagefile_test_util.h"

#include "imagefile/fNew.h"
#include "imagefile/fProperties.h"
#include "imagefile/imageproperties.h"
#include "imagefile/openDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

namespace ostrivex::test {
namespace {

QStringList items(const QComboBox* box) {
    QStringList out;
    for (int i = 0; i < box->count(); ++i)
        out << box->itemText(i);
    return out;
}

// Both fNew cases share the run-long size list, so they are one test, in order.
TEST(fNew, MinimumSizeAndTheSizeListOfTheRun) {
    const QStringList standard = {"240 x 320", "320 x 240", "480 x 640",  "640 x 480",
                                  "600 x 800", "800 x 600", "768 x 1024", "1024 x 768"};
    QStringList messages;
    {
        fNew dlg;
        dlg.ShowMessage = [&messages](const QString& m) { messages << m; };
        EXPECT_EQ(dlg.windowTitle(), "New Document");
        EXPECT_EQ(items(dlg.cbDefault), standard);
        EXPECT_EQ(dlg.chkKeepProportions->text(), "&Keep proportions");
        EXPECT_EQ(dlg.optTransparent->text(), "Transparent");
        EXPECT_EQ(dlg.optWhite->text(), "White");
        // 1 x 2 is refused with the box, and the dialog stays.
        dlg.txtW->setValue(1);
        dlg.txtH->setValue(2);
        dlg.accept();
        EXPECT_EQ(messages, QStringList{"Minimum size: 2 x 2"});
        EXPECT_NE(dlg.result(), QDialog::Accepted);
        dlg.txtW->setValue(2);
        dlg.txtH->setValue(0);
        dlg.accept();
        EXPECT_EQ(messages.size(), 2);
        EXPECT_NE(dlg.result(), QDialog::Accepted);
        // 2 x 2 is the smallest allowed.
        dlg.txtH->setValue(2);
        dlg.accept();
        EXPECT_EQ(messages.size(), 2);
        EXPECT_EQ(dlg.result(), QDialog::Accepted);
        EXPECT_EQ(dlg.request().width, 2);
        EXPECT_EQ(dlg.request().height, 2);
    }
    {
        // The typed size is offered on the next opening; a standard size is not doubled.
        fNew dlg;
        QStringList grown = standard;
        grown << "2 x 2";
        EXPECT_EQ(items(dlg.cbDefault), grown);
        dlg.txtW->setValue(640);
        dlg.txtH->setValue(480);
        dlg.accept();
        EXPECT_EQ(dlg.result(), QDialog::Accepted);
    }
    fNew dlg;
    EXPECT_EQ(dlg.cbDefault->count(), 9);
    EXPECT_EQ(fNew::StandardSizes().back(), "2 x 2");
}

TEST(fNew, StandardSizesAndKeepProportions) {
    fNew dlg;
    // Opens on 640 x 480.
    EXPECT_EQ(dlg.txtW->value(), 640);
    EXPECT_EQ(dlg.txtH->value(), 480);
    dlg.cbDefault->setCurrentIndex(7);
    emit dlg.cbDefault->activated(7);
    EXPECT_EQ(dlg.txtW->value(), 1024);
    EXPECT_EQ(dlg.txtH->value(), 768);
    // Without the box the fields are free.
    dlg.txtW->setValue(500);
    EXPECT_EQ(dlg.txtH->value(), 768);
    dlg.cbDefault->setCurrentIndex(3);
    emit dlg.cbDefault->activated(3);
    dlg.chkKeepProportions->setChecked(true);
    // 4 : 3 kept: 320 -> 240; 100 high -> 133.3 -> 133 wide; 1001 wide -> 750.75 -> 751.
    dlg.txtW->setValue(320);
    EXPECT_EQ(dlg.txtH->value(), 240);
    dlg.txtH->setValue(100);
    EXPECT_EQ(dlg.txtW->value(), 133);
    dlg.txtW->setValue(1001);
    EXPECT_EQ(dlg.txtH->value(), 751);
    // Halves round to even: 2 -> 1.5 -> 2, 6 -> 4.5 -> 4.
    dlg.txtW->setValue(2);
    EXPECT_EQ(dlg.txtH->value(), 2);
    dlg.txtW->setValue(6);
    EXPECT_EQ(dlg.txtH->value(), 4);
}

TEST(fNew, BackgroundChoices) {
    fNew dlg;
    EXPECT_TRUE(dlg.optWhite->isChecked());
    EXPECT_EQ(dlg.request().background, NewImageRequest::Background::White);
    EXPECT_EQ(dlg.request().fillColour(), 0x00FFFFFFu);
    // Picking a colour in the well selects the colour option.
    dlg.SetWellColour(0x00336699);
    EXPECT_TRUE(dlg.optColour->isChecked());
    EXPECT_FALSE(dlg.optWhite->isChecked());
    EXPECT_EQ(dlg.request().background, NewImageRequest::Background::Colour);
    EXPECT_EQ(dlg.request().fillColour(), 0x00336699u);
    EXPECT_TRUE(dlg.CP->styleSheet().contains("rgb(153,102,51)"));
    dlg.optTransparent->setChecked(true);
    EXPECT_EQ(dlg.request().background, NewImageRequest::Background::Transparent);
    EXPECT_EQ(dlg.request().colour, 0x00336699u);
}

TEST(ImageProperties, TextsOfTheLists) {
    using Texts = std::vector<std::string>;
    // The texts `f` gives for each of `inputs`, in order.
    auto texts = [](auto f, std::initializer_list<int> inputs) {
        Texts out;
        for (int in : inputs)
            out.push_back(f(in));
        return out;
    };
    EXPECT_EQ(texts(DepthText, {1, 2, 4, 7, 8, 15, 16, 24, 32, 9, 48}),
              (Texts{"Black & White", "4 Colors", "16 Colors", "128 Colors", "256 Colors",
                     "32668 Colors", "65336 Colors", "16777216 Colors (True Color)",
                     "4294967296 Colors (High Color)", "", ""}));
    EXPECT_EQ(
        texts(AttributeText, {0, 32, 33, 35, 37, 39, 3}),
        (Texts{"Normal", "Normal, Archive", "Archive, Read Only", "Archive, Read Only, Hidden",
               "Archive, Read Only, System", "Archive, Read Only, Hidden, System", ""}));
    // Every key of the type table has a text, and nothing else has.
    for (const char* ext :
         {"psp",  "pic",  "pix",  "pxr",  "xpm",  "raw",  "dcx",  "dds", "lif", "wal", "mdl",
          "oil",  "lmp",  "sgi",  "bw",   "rgb",  "rgba", "act",  "pal", "bmp", "rle", "gif",
          "wmf",  "emf",  "ico",  "dib",  "cur",  "cut",  "iff",  "jpg", "jpe", "jif", "jpeg",
          "jiff", "jff",  "jfi",  "jfif", "jbig", "jbg",  "jtif", "koa", "lbm", "mng", "pcd",
          "pcx",  "png",  "psd",  "pdd",  "ras",  "sun",  "tga",  "vda", "icb", "vst", "targa",
          "tif",  "tiff", "wbmp", "pbm",  "pgm",  "ppm",  "jng"})
        EXPECT_NE(FileTypeText(ext), "") << ext;
    EXPECT_EQ(FileTypeText("olf"), "");
    EXPECT_EQ(FileTypeText("PNG"), FileTypeText("png"));
    // Kilobytes rounded to nearest, halves to even.
    EXPECT_EQ(texts(SizeText, {0, 511, 1536, 2560, 30054}),
              (Texts{"0 KB", "0 KB", "2 KB", "2 KB", "29 KB"}));
}

TEST(ImageProperties, FactsOfAFile) {
    ScratchDir dir;
    // 100 x 100 at 24 bits: 54 bytes of headers and 100 rows of 300 bytes = 30054 bytes.
    const Bits picture = rgbBits(100, 100, std::vector<Rgb>(10000, Rgb{1, 2, 3}));
    const std::string path = dir.file("square.bmp");
    ASSERT_TRUE(SaveImageFile(picture, path, "bmp").ok);
    ASSERT_EQ(readBytes(path).size(), 30054u);
    fProperties dlg(path, "square.bmp", 0, 0);
    EXPECT_EQ(dlg.windowTitle(), "Image Properties");
    EXPECT_EQ(dlg.PName->text(), "square.bmp");
    EXPECT_EQ(dlg.pType->text(), "Windows Bitmap");
    EXPECT_EQ(dlg.PSize->text(), "29 KB");
    EXPECT_EQ(dlg.PWidth->text(), "100");
    EXPECT_EQ(dlg.PHeight->text(), "100");
    EXPECT_EQ(dlg.PDepth->text(), "16777216 Colors (True Color)");
    EXPECT_EQ(dlg.PBits->text(), "24");
    // FreeImage gives a new picture 72 dots per inch, and the BMP keeps them.
    EXPECT_EQ(dlg.PResolution->text(), "72 x 72");
    EXPECT_EQ(dlg.PParent->text().toStdString(), dir.path());
    EXPECT_EQ(dlg.PDate->text().size(), 19);
    EXPECT_EQ(dlg.PAttribute->text(), "Normal, Archive");

    // A dot file is hidden; a 1-bit PBM reports two colours.
    writeText(dir.file(".bw.pbm"), "P1\n3 2\n1 0 1\n0 1 0\n");
    ImagePropertiesText t = ImageProperties(dir.file(".bw.pbm"), "", 0, 0);
    EXPECT_EQ(t.attribute, "Archive, Hidden");
    EXPECT_EQ(t.type, "Portable Bitmap");
    EXPECT_EQ(t.depth, "Black & White");
    EXPECT_EQ(t.bits, "1");
    EXPECT_EQ(t.width, "3");
    EXPECT_EQ(t.height, "2");
    EXPECT_EQ(t.size, "0 KB");
}

TEST(ImageProperties, ADocumentWithoutAFile) {
    fProperties dlg("", "New.bmp", 30, 20);
    EXPECT_EQ(dlg.PName->text(), "New.bmp");
    EXPECT_EQ(dlg.PWidth->text(), "30");
    EXPECT_EQ(dlg.PHeight->text(), "20");
    for (QLabel* empty : {dlg.pType, dlg.PSize, dlg.PDepth, dlg.PBits, dlg.PResolution, dlg.PParent,
                          dlg.PDate, dlg.PAttribute})
        EXPECT_EQ(empty->text(), "") << empty->objectName().toStdString();
}

TEST(OpenImageDialog, PreviewLoadsTheSelectedFile) {
    ScratchDir dir;
    ASSERT_TRUE(SaveImageFile(patternPicture(), dir.file("pattern.png"), "png").ok);
    writeText(dir.file("broken.png"), "not a png");
    OpenImageDialog dlg(OpenImageDialog::Kind::Open, QString::fromStdString(dir.path()));
    EXPECT_EQ(dlg.windowTitle(), "Open");
    EXPECT_EQ(dlg.nameFilters().size(), 35);
    EXPECT_EQ(dlg.fileMode(), QFileDialog::ExistingFile);
    EXPECT_TRUE(dlg.testOption(QFileDialog::DontUseNativeDialog));

    // A change of selection loads the file, keeps its pixels and shows them.
    emit dlg.currentChanged(QString::fromStdString(dir.file("pattern.png")));
    EXPECT_TRUE(dlg.previewLoaded());
    EXPECT_EQ(dlg.previewPath().toStdString(), dir.file("pattern.png"));
    EXPECT_TRUE(samePixels(patternPicture(), dlg.loaded.pixels));
    EXPECT_EQ(dlg.previewCaption()->text(), "4 x 3, 0 KB");
    EXPECT_FALSE(dlg.preview()->pixmap().isNull());
    EXPECT_EQ(dlg.preview()->pixmap().toImage().pixel(0, 0), qRgb(255, 0, 0));

    // A broken file leaves no preview and no pixels.
    dlg.ShowPreview(QString::fromStdString(dir.file("broken.png")));
    EXPECT_FALSE(dlg.previewLoaded());
    EXPECT_TRUE(dlg.preview()->pixmap().isNull());
    EXPECT_EQ(dlg.previewCaption()->text(), "");
    EXPECT_TRUE(dlg.loaded.pixels.empty());

    // Metafiles go through the picture loader.
    dlg.ShowPreview(QString::fromStdString(dataFile("shapes.emf")));
    EXPECT_TRUE(dlg.previewLoaded());
    EXPECT_EQ(dlg.previewCaption()->text(), "200 x 100, 0 KB");

    OpenImageDialog layer(OpenImageDialog::Kind::Layer, QString());
    EXPECT_EQ(layer.windowTitle(), "Open Image as Layer");
    EXPECT_EQ(layer.nameFilters().size(), 34);
}

} // namespace
} // namespace ostrivex::test
