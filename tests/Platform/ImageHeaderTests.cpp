#include "MailCore/Platform/ImageHeader.h"

#include "tests/Support/Case.h"
#include "tests/Support/TestImages.h"

#include <gtest/gtest.h>

#include <memory>

using namespace MailCore;
using namespace MailCore::Testing;

namespace {

/// Inspects a copy that ends where the data ends, so that a read behind it is seen.
std::optional<ImageHeader> inspected(std::string_view data) {
    const Bytes exact = copyOf(bytesOf(data));
    return imageHeader(exact);
}

} // namespace

TEST(ImageHeader, ReadsSizeAndFrames) {
    const Case<std::string, std::optional<ImageHeader>> cases[] = {
        {"PNG", png(640, 480), ImageHeader{640, 480, 1}},
        {"animated PNG", png(64, 48, animationControl(12)), ImageHeader{64, 48, 2}},
        {"animated PNG of one frame", png(64, 48, animationControl(1)), ImageHeader{64, 48, 1}},
        {"PNG of no frame", png(64, 48, animationControl(0)), ImageHeader{64, 48, 0}},
        {"PNG that claims a billion pixels", png(1'000'000, 1'000), ImageHeader{1'000'000, 1'000, 1}},
        {"PNG wider than the decoder allows", png(0x7FFF'FFFF, 1), std::nullopt},
        {"PNG of width 0", png(0, 1), std::nullopt},
        {"PNG with a colour profile that is none", png(8, 8, pngChunk("iCCP", "x")), ImageHeader{8, 8, 1}},
        {"PNG with a chunk that claims two gigabytes", png(8, 8, bigEndian(0x7FFF'FFFF, 4) + "tEXt"),
         std::nullopt},
        {"PNG signature alone", "\x89PNG\r\n\x1A\n", std::nullopt},
        {"JPEG", jpeg(640, 480), ImageHeader{640, 480, 1}},
        {"JPEG of the largest size", jpeg(65'500, 65'500), ImageHeader{65'500, 65'500, 1}},
        {"JPEG of width 0", jpeg(0, 480), std::nullopt},
        {"JPEG without a frame", "\xFF\xD8\xFF\xD9", std::nullopt},
        {"GIF", gif(64, 48), ImageHeader{64, 48, 1}},
        {"animated GIF", gif(64, 48, 3), ImageHeader{64, 48, 2}},
        {"GIF without an image", gif(64, 48, 0), std::nullopt},
        {"GIF cut off in its pixels", gif(64, 48).substr(0, 26), ImageHeader{64, 48, 1}},
        {"GIF frame outside the screen",
         "GIF89a" + littleEndian16(1) + littleEndian16(1) + std::string(3, '\0') + "," +
             littleEndian16(9'000) + littleEndian16(0) + littleEndian16(10) + littleEndian16(1) +
             std::string("\0\x02\x01\x44\0;", 6),
         ImageHeader{9'010, 1, 1}},
        {"another type", "BM000000", std::nullopt},
        {"nothing", "", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(inspected(c.given), c.expected);
    }
}

TEST(ImageHeader, SurvivesEveryCutAndEveryWrongByte) {
    for (const std::string& whole : {png(8, 8, animationControl(2)), jpeg(8, 8), gif(8, 8, 2)}) {
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const auto header = inspected(whole.substr(0, size));
            EXPECT_TRUE(!header || header->width * header->height == 64) << size;
        }
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (const char byte : {'\0', '\x7F', '\xFF'}) {
                std::string wrong = whole;
                wrong[at] = byte;
                inspected(wrong);
            }
        }
    }
}
