// talvex image-info FILE... and talvex image-convert IN OUT.png: the image
// layer from the command line.
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <args.hxx>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/image/crop.h"
#include "sorvane/image/flip.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/imageio/imageio_jpeg.h"
#include "sorvane/imageio/imageio_png.h"
#include "sorvane/tools/Mode.h"

namespace talvex_app {

namespace {

class ImageInfoMode : public sorvane::Mode {
public:
    explicit ImageInfoMode(args::ArgumentParser& parser)
        : Mode(parser), paths(parser, "FILE", "PNG or JPEG files", args::Options::Required) {
        parser.Description("Reads the header of each image (by content, whatever its name) and prints codec, "
                           "size, channels and pixel format; nothing is decoded.");
    }

    void execute() override {
        for (const std::string& path : args::get(paths)) {
            const std::vector<unsigned char> bytes = sorvane::loadFile(path);
            const long size = static_cast<long>(bytes.size());
            const char* codec = sorvane::imcodec_detect_png(bytes.data(), size)    ? "PNG"
                                : sorvane::imcodec_detect_jpeg(bytes.data(), size) ? "JPEG"
                                                                                   : "unknown";
            sorvane::ImageInfo info;
            sorvane::decodeImage(info, bytes.data(), size, path);
            std::cout << path << ": " << codec << " " << info.width << "x" << info.height << ", " << info.channels
                      << " channels " << sorvane::pixelFormat2string(info.pixelFormat) << ", "
                      << sorvane::scalarType2string(info.scalarType) << ", " << info.pixelsSize
                      << " bytes of pixels, " << size << " bytes of file\n";
        }
    }

private:
    args::PositionalList<std::string> paths;
};

std::vector<long> parseCrop(const std::string& text) {
    std::vector<long> values;
    std::stringstream stream(text);
    std::string part;
    while (std::getline(stream, part, ',')) {
        size_t used = 0;
        long value = 0;
        try {
            value = std::stol(part, &used);
        } catch (const std::exception&) {
            used = 0;
        }
        if (used == 0 || used != part.size()) SORVANE_THROW("Invalid crop '%s': expected x0,y0,x1,y1", text.c_str());
        values.push_back(value);
    }
    if (values.size() != 4) SORVANE_THROW("Invalid crop '%s': expected x0,y0,x1,y1", text.c_str());
    return values;
}

class ImageConvertMode : public sorvane::Mode {
public:
    explicit ImageConvertMode(args::ArgumentParser& parser)
        : Mode(parser),
          input(parser, "IN", "a PNG or JPEG file (.png, .jpg, .jpeg)", args::Options::Required),
          output(parser, "OUT", "the PNG file to write (.png)", args::Options::Required),
          crop(parser, "x0,y0,x1,y1", "keep the window [x0,x1) x [y0,y1); outside the image is black (RGB only)",
               {"crop"}),
          vflip(parser, "vflip", "reverse the row order (RGB only)", {"vflip"}),
          layout(parser, "XYC|YXC", "layout the pixels are held in before saving (default YXC)", {"layout"}) {
        parser.Description("Reads an image, optionally crops and flips it, and writes it as PNG.");
    }

    void execute() override {
        sorvane::DataTree image =
            sorvane::loadImage(args::get(input), sorvane::ScalarType::UInteger8, sorvane::ImageFormat::YXC);
        if (crop) {
            const std::vector<long> w = parseCrop(args::get(crop));
            image = sorvane::cropImage(image, w[0], w[1], w[2], w[3]);
        }
        if (vflip) image = sorvane::vflipImage(image);
        if (layout) {
            const std::string name = args::get(layout);
            if (name != "XYC" && name != "YXC") SORVANE_THROW("Invalid layout '%s': expected XYC or YXC", name.c_str());
            sorvane::setImageFormat(image, name == "XYC" ? sorvane::ImageFormat::XYC : sorvane::ImageFormat::YXC);
        }
        sorvane::saveImage(args::get(output), image);
        const sorvane::DataTree& pixels = image.getItem("pixels");
        std::cout << args::get(output) << ": ";
        pixels.showTensorSizes(std::cout);
        std::cout << " (" << sorvane::imageFormat2string(
                                 sorvane::int2imageFormat(image.getItem("imageFormat").getInteger()))
                  << ")\n";
    }

private:
    args::Positional<std::string> input;
    args::Positional<std::string> output;
    args::ValueFlag<std::string> crop;
    args::Flag vflip;
    args::ValueFlag<std::string> layout;
};

} // namespace

sorvane::Mode* createImageInfoMode(args::ArgumentParser& parser) { return new ImageInfoMode(parser); }
sorvane::Mode* createImageConvertMode(args::ArgumentParser& parser) { return new ImageConvertMode(parser); }

} // namespace talvex_app
