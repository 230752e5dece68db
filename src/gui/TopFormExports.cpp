// The main window's exports beyond the picture and the text files: the plot as SVG or PDF
// with every run drawn again, the report as a PDF document, and the SPICE netlist the command
// line writes.
#include <QBuffer>
#include <QFontDatabase>
#include <QPageSize>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QTextDocument>

#include "app/Buildoutputs.h"
#include "app/Vectorplotfile.h"
#include "files/Atomicwrite.h"
#include "files/Filesaveread.h"
#include "gui/MessageSink.h"
#include "gui/PlotPanel.h"
#include "gui/RequirementForm.h"
#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"
#include "render/PdfPage.h"

namespace nerivane {
namespace {

void ShowSaveFailed(const std::string& why) {
    WindowMessages().ShowMessage(std::string(SaveFailedMessage) + "\n" + why, SaveFailedCaption);
}

bool WriteExport(const std::string& path, std::string_view bytes) {
    std::string reason;
    if (WriteFileAtomically(path, bytes, &reason)) return true;
    WindowMessages().ShowMessage(SaveFailedText(path, reason), SaveFailedCaption);
    return false;
}

}  // namespace

void TTopForm::DrawPlotOn(Canvas& canvas) {
    const PlotView& view = plot_->View();
    const Traces* reference =
        reference_.isSet && state_.PlotReference ? reference_.traces.get() : nullptr;
    if (state_.Tolerance != ToleranceMode::WorstCase || results_->runs <= 1) {
        DrawPlot(canvas, view, results_->traces, reference, true);
        return;
    }
    // The runs of a worst-case analysis are not kept; the same draws bring them back, here
    // without touching the design on screen.
    DesignState state = state_;
    ComponentSettings settings = settings_;
    auto results = std::make_unique<DesignResults>();
    CalculationOptions options;
    if (dialogs_.requirement != nullptr) options.mask = dialogs_.requirement->MaskToCheck();
    options.perRun = [&](int run, const Traces& traces) {
        DrawPlot(canvas, view, traces, run == 0 ? reference : nullptr, run == 0);
    };
    ToleranceRandom random;
    nerivane::Calculate(state, Parameters(), settings, *results, random, options);
    DrawEnvelope(canvas, GeometryFor(view), view, results->envelope);
}

bool TTopForm::SavePlotVectorTo(const std::string& path) {
    if (!calculated_) return false;
    try {
        VectorPlotFile file(plot_->View().width, plot_->View().height);
        DrawPlotOn(file.Drawing());
        file.Save(path, MakeQtPdfPage);
        return true;
    } catch (const std::exception& e) {
        ShowSaveFailed(e.what());
        return false;
    }
}

bool TTopForm::SaveReportPdfTo(const std::string& path) {
    QByteArray bytes;
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setCreator(QStringLiteral("Nerivane"));
        writer.setTitle(QString::fromStdString(ProposedFileName(state_)));
        // A fixed-pitch font keeps the report's columns (the order table) under each other.
        QTextDocument document;
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSize(9);
        document.setDefaultFont(font);
        document.setPlainText(widgets_->memo->toPlainText());
        document.print(&writer);
    }
    return WriteExport(path, std::string_view(bytes.constData(), bytes.size()));
}

bool TTopForm::SaveSpiceNetlistTo(const std::string& path) {
    if (!calculated_) return false;
    return WriteExport(path, DesignSpiceNetlist(state_, *results_, settings_));
}

}  // namespace nerivane
