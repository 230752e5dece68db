#include "render/PdfPage.h"

#include <QIODevice>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <stdexcept>

#include "render/OffscreenGui.h"
#include "render/QtCanvas.h"

namespace nerivane {
namespace {

// Hands the writer's bytes on as they come, so the file is never held whole.
class PassingDevice final : public QIODevice {
  public:
    explicit PassingDevice(const PdfWriter& write) : write_(write) { open(QIODevice::WriteOnly); }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        write_(std::string_view(data, static_cast<std::size_t>(size)));
        return size;
    }

  private:
    PdfWriter write_;
};

class QtPdfPage final : public PdfPage {
  public:
    QtPdfPage(int width, int height, const PdfWriter& write) : device_(write), writer_(&device_) {
        // A point per device unit, so the page is as many points as the picture has pixels.
        writer_.setResolution(72);
        writer_.setPageLayout(QPageLayout(
            QPageSize(QSizeF(width, height), QPageSize::Point, QString(), QPageSize::ExactMatch),
            QPageLayout::Portrait, QMarginsF()));
        writer_.setCreator(QStringLiteral("Nerivane"));
        canvas_ = std::make_unique<QtCanvas>(writer_);
    }
    bool Painting() const { return canvas_->Painting(); }
    Canvas& Painter() override { return *canvas_; }
    // The painter's end writes the page and closes the file.
    void Finish() override { canvas_.reset(); }

  private:
    PassingDevice device_;
    QPdfWriter writer_;
    std::unique_ptr<QtCanvas> canvas_;
};

}  // namespace

std::unique_ptr<PdfPage> MakeQtPdfPage(int width, int height, const PdfWriter& write) {
    EnsureGuiApplication();
    auto page = std::make_unique<QtPdfPage>(width, height, write);
    if (!page->Painting()) throw std::runtime_error("The PDF page cannot be painted.");
    return page;
}

}  // namespace nerivane
