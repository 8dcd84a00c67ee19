// The steps from a picture to packed dots, each beside the library that was found to be quickest at the same or at the
// nearest thing to it. A page is 4096 rows; figures are a pixel.

#include "app/globals/model.h"
#include "benchmarks/contest.h"
#include "benchmarks/pages.h"
#include "device/raster.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/halftone.h"
#include "imaging/stucki.h"

#include <leptonica/allheaders.h>
#include <libyuv/convert_from_argb.h>
#include <opencv2/imgproc.hpp>
extern "C" {
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int kHeight = 4096;
constexpr int kOtsu = 3;
constexpr int kTypeOfPhotos = 2; ///< mode of halftoneImage

/// A picture, what our operations work on in place, and where the peers put their results.
struct Page
{
    explicit Page(const QImage& image)
        : picture(image)
        , gray(pixels())
        , work(pixels())
        , theirs(pixels())
        , grayImage(image.width(), image.height(), QImage::Format_Grayscale8)
    {
        imaging::grayFromBgrx32(picture.constBits(), pixels(), gray.data());
        for (int y = 0; y < height(); ++y)
            std::copy_n(gray.begin() + std::ptrdiff_t{y} * width(), width(), grayImage.scanLine(y));
    }

    int width() const { return picture.width(); }
    int height() const { return picture.height(); }
    std::size_t pixels() const { return static_cast<std::size_t>(width()) * static_cast<std::size_t>(height()); }
    ImageBuffer record(int format) { return {work.data(), width(), height(), 1, format}; }
    cv::Mat matrix(Bytes& bytes) const { return {height(), width(), CV_8U, bytes.data()}; }

    QImage picture;
    Bytes gray;
    Bytes work;
    Bytes theirs;
    QImage grayImage;
};

using PagePtr = std::shared_ptr<Page>;

void add(const PagePtr& page, const char* operation, const char* peer, const std::function<void()>& ours,
         const std::function<void()>& theirs, const std::function<void()>& prepare = {})
{
    const std::string name = std::string(operation) + " " + std::to_string(page->width());
    addContest({name, peer, static_cast<double>(page->pixels()), ours, theirs, prepare});
}

std::function<void()> freshGray(const PagePtr& page)
{
    return [page] { page->work = page->gray; };
}

/// What a job does first: grey from the picture, which stays as it is.
void makeGray(Page& page)
{
    imaging::grayFromBgrx32(page.picture.constBits(), page.pixels(), page.work.data());
}

void addGray(const PagePtr& page)
{
    add(
        page, "BGRX to grey", "libyuv", [page] { makeGray(*page); },
        [page] {
            libyuv::ARGBToJ400(page->picture.constBits(), page->picture.bytesPerLine(), page->theirs.data(),
                               page->width(), page->width(), page->height());
        });
}

void addText(const PagePtr& page)
{
    const auto binarize = [page] {
        ImageBuffer record = page->record(FormatGray8);
        binarizeImage(&record, kOtsu);
    };
    add(
        page, "Otsu and lone dots", "OpenCV, no clean-up", binarize,
        [page] {
            cv::Mat dots = page->matrix(page->theirs);
            cv::threshold(page->matrix(page->gray), dots, 0, 255, cv::THRESH_OTSU);
        },
        freshGray(page));
    add(
        page, "print type 1", "OpenCV, no clean-up",
        [page, binarize] {
            makeGray(*page);
            binarize();
        },
        [page] {
            const cv::Mat colours(page->height(), page->width(), CV_8UC4, page->picture.bits());
            cv::Mat dots = page->matrix(page->theirs);
            cv::cvtColor(colours, dots, cv::COLOR_BGRA2GRAY);
            cv::threshold(dots, dots, 0, 255, cv::THRESH_OTSU);
        });
}

QImage diffusedByQt(const QImage& picture)
{
    return picture.convertToFormat(QImage::Format_Mono, Qt::DiffuseDither);
}

std::shared_ptr<SwsContext> swscaleDiffusion(const Page& page)
{
    SwsContext* context = sws_alloc_context();
    const auto set = [context](const char* name, const char* value) { av_opt_set(context, name, value, 0); };
    set("srcw", std::to_string(page.width()).c_str());
    set("srch", std::to_string(page.height()).c_str());
    set("dstw", std::to_string(page.width()).c_str());
    set("dsth", std::to_string(page.height()).c_str());
    set("src_format", "gray");
    set("dst_format", "monob");
    set("sws_dither", "ed");
    if (sws_init_context(context, nullptr, nullptr) < 0)
        std::abort();
    return {context, sws_freeContext};
}

void addPhoto(const PagePtr& page)
{
    const auto diffuse = [page] {
        ImageBuffer record = page->record(FormatGray8);
        stuckiDiffuse(&record);
    };
    add(
        page, "Stucki diffusion", "Qt, Floyd-Steinberg", diffuse, [page] { diffusedByQt(page->grayImage); },
        freshGray(page));
    add(
        page, "Stucki diffusion", "libswscale, Floyd-Steinberg", diffuse,
        [page, context = swscaleDiffusion(*page)] {
            const unsigned char* const from[] = {page->gray.data()};
            unsigned char* const to[] = {page->theirs.data()};
            const int fromStride[] = {page->width()};
            const int toStride[] = {page->width() / 8};
            sws_scale(context.get(), from, fromStride, 0, page->height(), to, toStride);
        },
        freshGray(page));
    add(
        page, "print type 0", "Qt, Floyd-Steinberg",
        [page] {
            makeGray(*page);
            ImageBuffer record = page->record(FormatGray8);
            halftoneImage(&record, 0, 255, 0, kTypeOfPhotos);
        },
        [page] { diffusedByQt(page->picture); });
}

void addPack(const PagePtr& page)
{
    const auto dots = std::make_shared<Bytes>(page->gray);
    ImageBuffer record{dots->data(), page->width(), page->height(), 1, FormatGray8};
    binarizeImage(&record, kOtsu);
    const std::shared_ptr<PIX> theirs(pixCreate(page->width(), page->height(), 8),
                                      [](PIX* made) { pixDestroy(&made); });
    auto dot = dots->begin();
    for (int y = 0; y < page->height(); ++y) {
        for (int x = 0; x < page->width(); ++x)
            pixSetPixel(theirs.get(), x, y, *dot++);
    }
    add(
        page, "pack", "Leptonica",
        [page] {
            g_modelIndex = page->width() == 576 ? 1 : 0;
            packRaster(page->work.data(), page->width(), page->height());
        },
        [theirs] {
            PIX* packed = pixThresholdToBinary(theirs.get(), 128);
            pixDestroy(&packed);
        },
        [page, dots] { page->work = *dots; });
}

} // namespace

int main(int argc, char** argv)
{
    // Made once, here: QImage::fill leaves the upper halves of the wide registers in use, and until something clears
    // them, SSE2 code right behind it runs up to five times slower.
    cv::setNumThreads(1);
    const auto photo = std::make_shared<Page>(photograph(576, kHeight));
    const auto text = std::make_shared<Page>(pageOfText(384, kHeight));
    for (const auto& page : {photo, text}) {
        addGray(page);
        addText(page);
        addPhoto(page);
        addPack(page);
    }
    return runContests(argc, argv);
}
