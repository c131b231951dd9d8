#include "MailCore/Outlook/Compound.h"

#include "tests/Support/ContainerBuilder.h"
#include "tests/Support/Errors.h"

#include <gtest/gtest.h>

#include <functional>

namespace MailCore {
namespace {

using namespace Testing;
using File = ContainerFile;
using namespace std::string_literals;
using Damage = std::function<void(File&)>;

/// Content of which no two sectors are the same.
std::string content(std::size_t size, std::size_t seed = 1) {
    std::string text(size, ' ');
    for (std::size_t index = 0; index < size; ++index)
        text[index] = static_cast<char>('!' + (index / 64 * 7 + index + seed) % 90);
    return text;
}

/// One of everything: small and large streams, storages, three FAT sectors in a list of two.
Container ordinary() {
    return Container()
        .stream("small", content(150))
        .stream("large", content(5'000))
        .stream("empty", "")
        .stream("Box/Inner", content(70))
        .stream("Box/Deeper/Leaf", content(9'000));
}

Container listed() {
    return ordinary().fatSectors(6).fatList(1, 2);
}

std::string openingError(const File& file) {
    const Bytes bytes = file;
    return errorOf([&] { const Compound compound(bytes); });
}

/// The stream as text; "absent", or the name of the error.
std::string streamOf(const File& file, std::string_view path) {
    const Bytes bytes = file;
    std::string text = "absent";
    const std::string error = errorOf([&] {
        const Compound compound(bytes);
        if (const auto stream = compound.stream(path)) text = charsOf(*stream);
    });
    return error == "none" ? text : error;
}

TEST(Containers, GiveStreamsBackHoweverTheyLie) {
    struct Case {
        std::string_view name;
        Container container;
    };
    const Case cases[] = {
        {"sectors of 512 bytes", Container()},
        {"sectors of 4,096 bytes", Container().sectorSize(4'096)},
        {"scattered", Container().scattered()},
        {"scattered large sectors", Container().sectorSize(4'096).scattered()},
        {"siblings in a line", Container().degenerate()},
        {"a list of FAT sectors beyond the header", Container().scattered().fatSectors(9).fatList(2, 3)},
        {"no FAT sector in the header", Container().fatSectors(3).fatList(0, 1)},
        {"more than 109 FAT sectors", Container().fatSectors(111)},
    };
    for (Case c : cases) {
        SCOPED_TRACE(c.name);
        const std::size_t sizes[] = {0, 1, 63, 64, 65, 511, 512, 4'095, 4'096, 4'097, 70'000};
        for (const std::size_t size : sizes)
            c.container.stream("box/" + std::to_string(size), content(size, size));
        const File file = c.container.file();
        for (const std::size_t size : sizes)
            EXPECT_EQ(streamOf(file, "box/" + std::to_string(size)), content(size, size));
    }
}

TEST(Containers, KeepStreamsBelow4096BytesInTheMiniStream) {
    File file = Container().stream("4095", content(4'095)).stream("4096", content(4'096)).file();
    file.set(File::miniFatCount, 0);
    EXPECT_EQ(streamOf(file, "4095"), "malformed");
    EXPECT_EQ(streamOf(file, "4096"), content(4'096));
}

TEST(Containers, NameEntriesByPathWithoutCase) {
    const Bytes bytes = Container()
                            .stream("__SUBSTG1.0_0037001F", "subject")
                            .stream("__attach/__substg1.0_3701000D/ÄÖ", "inside")
                            .storage("Nothing")
                            .file();
    const Compound compound(bytes);
    std::vector<std::string> paths;
    for (const auto& place : compound.paths()) paths.push_back(place.first);
    const std::vector<std::string> expected = {"__attach", "__attach/__substg1.0_3701000d",
                                               "__attach/__substg1.0_3701000d/äö", "__substg1.0_0037001f",
                                               "nothing"};
    EXPECT_EQ(paths, expected);
    EXPECT_EQ(charsOf(compound.stream("__Substg1.0_0037001f").value()), "subject");
    EXPECT_EQ(charsOf(compound.stream("__ATTACH/__SUBSTG1.0_3701000d/äÖ").value()), "inside");
    EXPECT_EQ(compound.stream("__attach"), std::nullopt);
    EXPECT_EQ(compound.stream("äö"), std::nullopt);
    EXPECT_EQ(compound.nodes().front().kind, Compound::root);
}

TEST(Containers, AreRefusedForDamageOfTheirTables) {
    struct Case {
        std::string_view name;
        Container container;
        Damage damage;
        std::string_view error;
    };
    const auto atEnd = [](const File& f) { return f.data.size() / f.sector + 1; };
    const Case cases[] = {
        {"whole", listed(), [](File&) {}, "none"},
        {"a few bytes after the last sector", listed(), [](File& f) { f.data += "tail"; }, "none"},
        {"nothing", ordinary(), [](File& f) { f.data.clear(); }, "malformed"},
        {"one byte less than a header", ordinary(), [](File& f) { f.data.resize(511); }, "malformed"},
        {"a header alone", ordinary(), [](File& f) { f.data.resize(512); }, "malformed"},
        {"another signature", ordinary(), [](File& f) { f.data[7]++; }, "malformed"},
        {"big-endian", ordinary(), [](File& f) { f.set(File::byteOrder, 0xFEFF); }, "malformed"},
        {"sectors of 1,024 bytes", ordinary().sectorSize(1'024), [](File&) {}, "malformed"},
        {"sectors of 2,048 bytes", ordinary().sectorSize(2'048), [](File&) {}, "malformed"},
        {"a shift beyond all sizes", ordinary(), [](File& f) { f.set(File::sectorShift, 265); }, "malformed"},
        {"large sectors claimed", ordinary(), [](File& f) { f.set(File::sectorShift, 12); }, "malformed"},
        {"mini sectors of 32 bytes", ordinary(), [](File& f) { f.set(File::miniSectorShift, 5); },
         "malformed"},

        {"no FAT sector", ordinary(), [](File& f) { f.set(File::fatCount, 0); }, "malformed"},
        {"more FAT sectors than listed", ordinary(), [](File& f) { f.set(File::fatCount, 2); }, "malformed"},
        {"more FAT sectors than the file has", ordinary(), [&](File& f) { f.set(File::fatCount, atEnd(f)); },
         "malformed"},
        {"a FAT sector past the end", ordinary(), [](File& f) { f.set(File::fatList, f.sectorCount()); },
         "malformed"},
        {"a FAT sector whose offset wraps", ordinary(), [](File& f) { f.set(File::fatList, 0xFFFF'FFF9); },
         "malformed"},
        {"a marker as FAT sector", ordinary(), [](File& f) { f.set(File::fatList, File::end); }, "malformed"},
        {"the same FAT sector twice", ordinary(),
         [](File& f) {
             f.write(80, littleEndian(f.fat[0], 4));
             f.set(File::fatCount, 2);
         },
         "none"},

        {"more list sectors than the file has", listed(), [&](File& f) { f.set(File::difatCount, atEnd(f)); },
         "malformed"},
        {"one list sector more than there is", listed(),
         [](File& f) { f.set(File::difatCount, f.difat.size() + 1); }, "malformed"},
        {"one list sector less", listed(), [](File& f) { f.set(File::difatCount, f.difat.size() - 1); },
         "malformed"},
        {"no list sectors", listed(), [](File& f) { f.set(File::difatCount, 0); }, "malformed"},
        {"a list sector past the end", listed(),
         [](File& f) { f.setDifatNext(0, static_cast<std::uint32_t>(f.sectorCount())); }, "malformed"},
        {"a list that comes back", listed(), [](File& f) { f.setDifatNext(1, f.difat[0]); }, "malformed"},
        {"a list of itself", listed(), [](File& f) { f.setDifatNext(0, f.difat[0]); }, "malformed"},
        {"a marker as list sector", listed(), [](File& f) { f.set(File::firstDifat, File::none); },
         "malformed"},
        {"a needless list sector that is none", ordinary(), [](File& f) { f.set(File::difatCount, 1); },
         "malformed"},

        {"a directory past the table", ordinary(), [](File& f) { f.set(File::firstDirectory, 128); },
         "malformed"},
        {"a directory that is a marker", ordinary(), [](File& f) { f.set(File::firstDirectory, File::none); },
         "malformed"},
        {"a directory of nothing", ordinary(), [](File& f) { f.set(File::firstDirectory, File::end); },
         "malformed"},
        {"a directory that comes back", ordinary(),
         [](File& f) { f.setNext(f.directory.back(), f.directory[0]); }, "malformed"},
        {"a directory that goes on past the end", ordinary(),
         [](File& f) { f.setNext(f.directory.back(), static_cast<std::uint32_t>(f.sectorCount())); },
         "malformed"},
        {"a directory that goes on into a free sector", ordinary(),
         [](File& f) { f.setNext(f.directory[0], File::none); }, "malformed"},
        {"no root", ordinary(), [](File& f) { f.set("", File::kind, 1); }, "malformed"},
        {"an entry of 4 GiB", ordinary(), [](File& f) { f.set("large", File::highSize, 1); }, "tooLarge"},
        {"an unused entry of 4 GiB", ordinary().storage("more"),
         [](File& f) { f.data[f.entry("more") + 128 + 127] = 1; }, "tooLarge"},
        {"4 GiB before a missing root", ordinary(),
         [](File& f) {
             f.set("", File::kind, 2);
             f.set("", File::highSize, 1);
         },
         "tooLarge"},

        {"more mini FAT sectors than the file has", ordinary(),
         [&](File& f) { f.set(File::miniFatCount, atEnd(f)); }, "malformed"},
        {"a mini FAT longer than it says", ordinary(),
         [](File& f) { f.setNext(f.miniFat.back(), f.directory[0]); }, "malformed"},
        {"a mini FAT shorter than it says", ordinary(), [](File& f) { f.set(File::miniFatCount, 2); },
         "none"},
        {"a mini FAT that comes back", ordinary(), [](File& f) { f.setNext(f.miniFat.back(), f.miniFat[0]); },
         "malformed"},
        {"a mini FAT past the table", ordinary(), [](File& f) { f.set(File::firstMiniFat, 9'999); },
         "malformed"},
        {"a mini FAT that nobody looks at", ordinary(),
         [](File& f) {
             f.set(File::firstMiniFat, 9'999);
             f.set(File::miniFatCount, 0);
         },
         "none"},
        {"a mini stream past the table", ordinary(), [](File& f) { f.set("", File::start, 9'999); },
         "malformed"},
        {"a mini stream that comes back", ordinary(),
         [](File& f) { f.setNext(f.get("", File::start), f.get("", File::start)); }, "malformed"},
        {"a mini stream of no bytes past the table", ordinary(),
         [](File& f) {
             f.set("", File::start, 9'999);
             f.set("", File::size, 0);
         },
         "none"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        File file = c.container.file();
        c.damage(file);
        EXPECT_EQ(openingError(file), c.error);
    }
}

TEST(Containers, AreRefusedForATreeThatIsNone) {
    struct Case {
        std::string_view name;
        std::string_view path;
        File::Field field;
        std::string_view target; // path of an entry; a number of its own when empty
        std::uint32_t number = 0;
    };
    const Case cases[] = {
        {"left past the directory", "small", File::left, "", 8},
        {"right past the directory", "small", File::right, "", 8},
        {"child past the directory", "Box", File::child, "", 8},
        {"root's child past the directory", "", File::child, "", 0xFFFF'FFFE},
        {"its own left", "small", File::left, "small"},
        {"its own right", "small", File::right, "small"},
        {"its own child", "Box", File::child, "Box"},
        {"the storage it is in", "Box/Inner", File::right, "Box"},
        {"the child of two storages", "Box/Deeper", File::child, "Box/Inner"},
        {"a neighbour twice", "Box/Deeper/Leaf", File::left, "small"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        File file = ordinary().file();
        file.set(c.path, c.field, c.target.empty() ? c.number : file.entries.find(c.target)->second);
        EXPECT_EQ(openingError(file), "malformed");
    }
    // A stream's child is nobody's business, nor is what no entry leads to.
    File file = ordinary().file();
    file.set("small", File::child, 9'999);
    EXPECT_EQ(openingError(file), "none");
    file.set("", File::child, File::none);
    file.set("large", File::left, 9'999);
    EXPECT_EQ(openingError(file), "none");
}

TEST(Containers, AreRefusedAboveTheirLimits) {
    const auto line = [](int siblings) {
        Container container = Container().degenerate();
        for (int index = 0; index < siblings; ++index) container.storage("s" + std::to_string(index));
        return openingError(container.file());
    };
    EXPECT_EQ(line(101), "none");
    EXPECT_EQ(line(102), "malformed");
    const auto nest = [](int levels) {
        std::string path = "s";
        for (int level = 1; level < levels; ++level) path += "/s";
        return openingError(Container().storage(path).file());
    };
    EXPECT_EQ(nest(101), "none");
    EXPECT_EQ(nest(102), "malformed");
    const auto entries = [](int count) {
        Container container;
        for (int index = 1; index < count; ++index) container.storage(std::to_string(index));
        return openingError(container.file());
    };
    EXPECT_EQ(entries(20'000), "none");
    EXPECT_EQ(entries(20'001), "tooMany");
}

TEST(Containers, KeepThePlaceOfEntriesWithUnusableNames) {
    struct Case {
        std::string_view name;
        std::uint32_t length; // bytes, terminator included
        std::string units;
        std::string_view expected;
    };
    const std::string longest = utf16(std::string(31, 'n'));
    const Case cases[] = {
        {"the longest", 64, longest, "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn"},
        {"without a terminator", 66, longest + "no", ""},
        {"half a terminator", 1, utf16("name"), ""},
        {"no length", 0, utf16("name"), ""},
        {"a terminator alone", 2, utf16("name"), ""},
        {"an odd length", 9, utf16("name"), ""},
        {"shorter than its text", 6, utf16("name"), "na"},
        {"a character of two units", 6, "\x3D\xD8\x00\xDE"s, "😀"},
        {"the first half of one", 4, "\x3D\xD8"s, ""},
        {"the second half of one", 6, "\x00\xDEx\0"s, ""},
        {"the halves in the wrong order", 6, "\x00\xDE\x3D\xD8"s, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        File file = Container().degenerate().stream("a", "1").stream("b", "2").stream("c", "3").file();
        file.write(file.entry("b"), c.units);
        file.set("b", File::nameLength, c.length);
        const Bytes bytes = file;
        const Compound compound(bytes);
        EXPECT_EQ(compound.nodes().at(2).name, c.expected);
        EXPECT_EQ(charsOf(compound.stream(c.expected).value()), "2");
        EXPECT_EQ(charsOf(compound.stream("c").value()), "3");
    }
}

TEST(Containers, TakeTheLaterOfTwoEntriesWithOnePath) {
    File file = Container().stream("a", "left").stream("b", "middle").stream("c", "right").file();
    file.write(file.entry("a"), utf16("B"));
    EXPECT_EQ(streamOf(file, "b"), "middle");
    file.write(file.entry("c"), utf16("b"));
    EXPECT_EQ(streamOf(file, "b"), "right");
}

TEST(Streams, AreRefusedWhenTheirChainsAreBroken) {
    struct Case {
        std::string_view name;
        std::string_view path;
        Damage damage;
    };
    const auto startOf = [](const File& f, std::string_view path) { return f.get(path, File::start); };
    const Case cases[] = {
        {"a large stream that is larger", "large", [](File& f) { f.set("large", File::size, 5'121); }},
        {"a small stream that is larger", "small", [](File& f) { f.set("small", File::size, 193); }},
        {"32 MiB claimed", "large", [](File& f) { f.set("large", File::size, 33'554'432); }},
        {"a large stream of no sectors", "large", [](File& f) { f.set("large", File::start, File::end); }},
        {"a small stream of no sectors", "small", [](File& f) { f.set("small", File::start, File::end); }},
        {"a start that is a marker", "large", [](File& f) { f.set("large", File::start, File::none); }},
        {"a start past the table", "large", [](File& f) { f.set("large", File::start, 128); }},
        {"a start past the file", "large", [](File& f) { f.set("large", File::start, f.sectorCount()); }},
        {"a small start past the table", "small", [](File& f) { f.set("small", File::start, 128); }},
        {"a small start past the mini stream", "small", [](File& f) { f.set("small", File::start, 100); }},
        {"a chain that comes back to its start", "large",
         [&](File& f) { f.setNext(f.lastSector("large"), startOf(f, "large")); }},
        {"a chain that stays where it is", "large",
         [&](File& f) { f.setNext(startOf(f, "large"), startOf(f, "large")); }},
        {"a chain past the table", "large", [](File& f) { f.setNext(f.lastSector("large"), 9'999); }},
        {"a chain past the file", "large",
         [](File& f) { f.setNext(f.lastSector("large"), static_cast<std::uint32_t>(f.sectorCount())); }},
        {"a chain into a table sector", "large", [](File& f) { f.setNext(f.lastSector("large"), f.fat[0]); }},
        {"a chain broken past the size", "large",
         [](File& f) {
             f.set("large", File::size, 4'096);
             f.setNext(f.lastSector("large"), File::none);
         }},
        {"a chain into another that is broken", "large",
         [&](File& f) {
             f.setNext(f.lastSector("Box/Deeper/Leaf"), File::none);
             f.setNext(startOf(f, "large"), startOf(f, "Box/Deeper/Leaf"));
         }},
        {"a small chain that comes back", "small",
         [&](File& f) { f.setMiniNext(startOf(f, "small") + 2, startOf(f, "small")); }},
        {"a small chain past the mini stream", "small",
         [&](File& f) { f.setMiniNext(startOf(f, "small") + 2, 100); }},
        {"a mini stream that is shorter", "Box/Inner", [](File& f) { f.set("", File::size, 255); }},
        {"no mini FAT", "small", [](File& f) { f.set(File::miniFatCount, 0); }},
        {"no mini stream", "small", [](File& f) { f.set("", File::size, 0); }},
        {"a mini stream of no sectors", "small", [](File& f) { f.set("", File::start, File::end); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        File file = ordinary().file();
        EXPECT_NE(streamOf(file, c.path), "malformed");
        c.damage(file);
        EXPECT_EQ(openingError(file), "none");
        EXPECT_EQ(streamOf(file, c.path), "malformed");
        EXPECT_EQ(streamOf(file, "empty"), ""); // the others are as they were
    }
}

TEST(Streams, MayBeLessThanTheirEntriesSay) {
    struct Case {
        std::string_view name;
        std::string_view path;
        Damage damage;
        std::string expected;
    };
    const Case cases[] = {
        {"cut within a sector", "large", [](File& f) { f.set("large", File::size, 4'100); }, content(4'100)},
        {"cut by a sector", "small", [](File& f) { f.set("small", File::size, 64); }, content(64)},
        {"empty with a start past the table", "large",
         [](File& f) {
             f.set("large", File::size, 0);
             f.set("large", File::start, 9'999);
         },
         ""},
        {"into the chain of another", "large",
         [](File& f) {
             f.setNext(f.lastSector("large"), f.get("Box/Deeper/Leaf", File::start));
             f.set("large", File::size, 5'120 + 512);
         },
         content(5'000) + std::string(120, '\0') + content(512)},
        {"the sectors of another", "large", [](File& f) { f.share("large", "Box/Deeper/Leaf"); },
         content(9'000)},
        {"more than 32 MiB", "large", [](File& f) { f.set("large", File::size, 33'554'433); }, "absent"},
        {"no stream but a storage", "large", [](File& f) { f.set("large", File::kind, 1); }, "absent"},
        {"no stream but nothing", "large", [](File& f) { f.set("large", File::kind, 0); }, "absent"},
        {"no stream but something unknown", "large", [](File& f) { f.set("large", File::kind, 3); },
         "absent"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        File file = ordinary().file();
        c.damage(file);
        EXPECT_EQ(streamOf(file, c.path), c.expected);
    }
}

TEST(Streams, AreOfThirtyTwoMebibytesAtMost) {
    constexpr std::size_t most = 33'554'432;
    File file = Container().sectorSize(4'096).stream("s", std::string(most + 1, 's')).file();
    EXPECT_EQ(streamOf(file, "s"), "absent");
    file.set("s", File::size, most); // but the chain is longer
    EXPECT_EQ(streamOf(file, "s"), "malformed");
    file.setNext(file.lastSector("s") - 1, File::end);
    EXPECT_EQ(streamOf(file, "s").size(), most);
}

TEST(Streams, AreNeverReadWholeFromATruncatedFile) {
    for (Container container : {listed(), listed().scattered(), ordinary().sectorSize(4'096).scattered()}) {
        const File whole = container.file();
        for (std::size_t length = 0; length < whole.data.size(); length += 256) {
            File file = whole;
            file.data.resize(length);
            std::string problems;
            for (const std::string_view path : {"small", "large", "box/inner", "box/deeper/leaf"}) {
                const std::string stream = streamOf(file, path);
                if (stream == "malformed") problems += path;
                EXPECT_TRUE(stream == "malformed" || stream == streamOf(whole, path)) << length;
            }
            EXPECT_NE(problems, "") << length;
        }
    }
}

} // namespace
} // namespace MailCore
