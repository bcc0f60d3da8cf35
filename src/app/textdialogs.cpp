#include "app/textdialogs.h"

#include "app/colour/pickcolour.h"
#include "document/fimage.h"
#include "document/host.h"
#include "text/f3d.h"
#include "text/flayertext.h"
#include "text/logoman.h"
#include "text/textcontrols.h"
#include "text/textlayersink.h"

namespace ostrivex {

namespace {

// Until the layers exist: every finished text becomes a document of its own.
class NewDocumentTextSink : public TextLayerSink {
  public:
    void AddTextLayer(const FinishedText& text) override { newDocument(text); }
    void UpdateTextLayer(int32_t, const FinishedText& text) override { newDocument(text); }

  private:
    static void newDocument(const FinishedText& text) {
        DocumentHost* host = GetDocumentHost();
        if (!host || text.picture.width() < 1 || text.picture.height() < 1) return;
        auto* doc = new fImage;
        doc->BeginDocument(QString());
        doc->PBits(text.picture);
        doc->FileName = QStringLiteral("New.bmp");
        doc->FileExtension = QStringLiteral("bmp");
        doc->SaveUndoBits(QStringLiteral("Original"));
        doc->UpdateImage();
        host->AddDocumentWindow(doc);
    }
};

NewDocumentTextSink interimSink;

} // namespace

void InstallTextDialogs() {
    TextDialogHooks::ChooseColour = [](QWidget* parent, int32_t& colour) {
        return PickColour(parent, colour);
    };
    if (!GetTextLayerSink()) SetTextLayerSink(&interimSink);
}

void OpenTextDialog(QWidget* parent, TextDialogKind kind) {
    switch (kind) {
    case TextDialogKind::StyleText: {
        fLayerText dialog(parent);
        dialog.exec();
        break;
    }
    case TextDialogKind::Text3D: {
        f3D dialog(parent);
        dialog.exec();
        break;
    }
    case TextDialogKind::Logo: {
        LogoMan dialog(parent);
        dialog.exec();
        break;
    }
    }
}

} // namespace ostrivex
