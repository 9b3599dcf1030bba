#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// Holds the code against the table of folders in src/layers.txt.

namespace vantrel {
namespace {

namespace fs = std::filesystem;

const fs::path sourceRoot = fs::path(VANTREL_SOURCE_DIR) / "src";

/// What decides how the program behaves, on any system.
const std::set<std::string> coreFolders = {"platform", "text",  "walk",   "model/engine", "model",
                                           "theme",    "panel", "dialog", "commander",    "app"};

struct Layer {
    std::string place;  // a folder of src/, or one file with rules of its own
    std::set<std::string> neighbours;
};

std::vector<Layer> readLayers() {
    std::vector<Layer> layers;
    std::ifstream file(sourceRoot / "layers.txt");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(':');
        if (line.starts_with('#') || colon == std::string::npos) continue;
        std::istringstream names(line.substr(colon + 1));
        Layer layer{line.substr(0, colon), {}};
        for (std::string name; names >> name;) layer.neighbours.insert(name);
        layers.push_back(std::move(layer));
    }
    return layers;
}

std::vector<std::string> sourceFiles() {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(sourceRoot)) {
        const std::string extension = entry.path().extension();
        if (extension == ".h" || extension == ".cpp") {
            files.push_back(entry.path().lexically_relative(sourceRoot).string());
        }
    }
    std::ranges::sort(files);
    return files;
}

std::string folderOf(const std::string& file) {
    return fs::path(file).parent_path().string();
}

const Layer* layerOf(const std::vector<Layer>& layers, const std::string& file) {
    for (const std::string& place : {file, folderOf(file)}) {
        const auto found = std::ranges::find(layers, place, &Layer::place);
        if (found != layers.end()) return &*found;
    }
    return nullptr;
}

struct Includes {
    std::vector<std::string> ours;    // "quoted"
    std::vector<std::string> system;  // <angled>
};

Includes includesOf(const std::string& file) {
    static const std::regex directive("^\\s*#\\s*include\\s*([<\"])([^>\"]+)[>\"].*");
    Includes includes;
    std::ifstream stream(sourceRoot / file);
    for (std::string line; std::getline(stream, line);) {
        std::smatch match;
        if (!std::regex_match(line, match, directive)) continue;
        (match[1] == "<" ? includes.system : includes.ours).push_back(match[2]);
    }
    return includes;
}

TEST(Layers, everyNeighbourStandsAboveItsUserInTheTableSoThatArrowsOnlyPointDown) {
    std::set<std::string> known;
    for (const Layer& layer : readLayers()) {
        for (const std::string& neighbour : layer.neighbours) {
            EXPECT_TRUE(known.contains(neighbour)) << layer.place << " -> " << neighbour;
        }
        known.insert(layer.place);
    }
    EXPECT_TRUE(known.contains("commander"));
}

TEST(Layers, everySourceFileIncludesOnlyItsOwnFolderAndItsNeighbours) {
    const std::vector<Layer> layers = readLayers();
    const std::vector<std::string> files = sourceFiles();
    ASSERT_FALSE(files.empty());
    for (const std::string& file : files) {
        const Layer* layer = layerOf(layers, file);
        ASSERT_NE(layer, nullptr) << file << " stands in a folder that the table does not name";
        for (const std::string& include : includesOf(file).ours) {
            const std::string folder = folderOf(include);
            EXPECT_TRUE(folder == folderOf(file) || layer->neighbours.contains(folder))
                << file << " includes " << include;
            EXPECT_TRUE(fs::exists(sourceRoot / include)) << file << " includes " << include;
        }
    }
}

TEST(Layers, onlyTheDesktopFoldersAndTheProgramsEntriesKnowTheToolkit) {
    const std::set<std::string> allowed = {"qt",      "qt/preview",   "qt/accessibility",
                                           "desktop", "app/main.cpp", "snapshot"};
    for (const std::string& file : sourceFiles()) {
        if (allowed.contains(file) || allowed.contains(folderOf(file))) continue;
        for (const std::string& include : includesOf(file).system) {
            EXPECT_FALSE(include.starts_with("Q") || include.starts_with("qt"))
                << file << " includes " << include;
        }
    }
}

/// All that a program gets to link by the table, `place` itself included.
std::set<std::string> reachableFrom(const std::string& place) {
    std::set<std::string> reached;
    std::vector<std::string> open{place};
    while (!open.empty()) {
        const std::string next = open.back();
        open.pop_back();
        if (!reached.insert(next).second) continue;
        for (const Layer& layer : readLayers()) {
            if (layer.place == next)
                open.insert(open.end(), layer.neighbours.begin(), layer.neighbours.end());
        }
    }
    return reached;
}

TEST(Layers, theSizesAloneLinkNoLanguageRules) {
    const std::set<std::string> sizes = reachableFrom("sizes/main.cpp");
    EXPECT_TRUE(sizes.contains("model/engine"));
    EXPECT_FALSE(sizes.contains("text")) << "and with it ICU";
}

TEST(Layers, coreFoldersKnowNoSystem) {
    for (const std::string& file : sourceFiles()) {
        if (!coreFolders.contains(folderOf(file)) || file == "app/main.cpp") continue;
        for (const std::string& include : includesOf(file).system) {
            const bool isOfTheLanguage = include.find_first_of("/.") == std::string::npos;
            EXPECT_TRUE(isOfTheLanguage || include.starts_with("unicode/"))
                << file << " includes " << include;
        }
    }
}

std::size_t linesOf(const std::string& file) {
    std::ifstream stream(sourceRoot / file);
    return static_cast<std::size_t>(
        std::count(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>(), '\n'));
}

TEST(Layers, noFolderHoldsMoreThanAQuarterOfTheLines) {
    std::map<std::string, std::size_t> linesByFolder;
    std::size_t all = 0;
    for (const std::string& file : sourceFiles()) {
        const std::size_t lines = linesOf(file);
        linesByFolder[folderOf(file)] += lines;
        all += lines;
    }
    for (const auto& [folder, lines] : linesByFolder) EXPECT_LE(4 * lines, all) << folder;
}

/// Where each folder stands in the picture of docs/architecture.md: the number of its line. Words beside the
/// picture explain it and are not looked at.
std::map<std::string, std::size_t> foldersInThePicture() {
    constexpr std::size_t widthOfThePicture = 52;
    std::ifstream page(fs::path(VANTREL_SOURCE_DIR) / "docs" / "architecture.md");
    std::map<std::string, std::size_t> found;
    bool isInside = false;
    std::size_t number = 0;
    for (std::string line; std::getline(page, line); ++number) {
        if (line.starts_with("```")) {
            if (isInside) break;
            isInside = true;
            continue;
        }
        if (!isInside) continue;
        std::istringstream words(line.substr(0, widthOfThePicture));
        for (std::string word; words >> word;) {
            if (std::isalpha(static_cast<unsigned char>(word.front())) != 0) found.emplace(word, number);
        }
    }
    return found;
}

TEST(Layers, standInThePictureAsInTheTable) {
    const std::map<std::string, std::size_t> picture = foldersInThePicture();
    std::set<std::string> table;
    for (const Layer& layer : readLayers()) {
        table.insert(layer.place);
        ASSERT_TRUE(picture.contains(layer.place)) << layer.place << " is missing";
        for (const std::string& neighbour : layer.neighbours) {
            ASSERT_TRUE(picture.contains(neighbour)) << neighbour << " is missing";
            EXPECT_LT(picture.at(layer.place), picture.at(neighbour))
                << layer.place << " has to stand above " << neighbour;
        }
    }
    for (const auto& [name, line] : picture) EXPECT_TRUE(table.contains(name)) << name << " is no folder";
}

TEST(Layers, onlyTheTextFolderKnowsIcu) {
    for (const std::string& file : sourceFiles()) {
        if (folderOf(file) == "text") continue;
        for (const std::string& include : includesOf(file).system) {
            EXPECT_FALSE(include.starts_with("unicode/")) << file << " includes " << include;
        }
    }
}

TEST(Layers, everySourceFileIncludesItsOwnHeaderFirst) {
    for (const std::string& file : sourceFiles()) {
        if (!file.ends_with(".cpp")) continue;
        const std::string header = file.substr(0, file.size() - 4) + ".h";
        if (!fs::exists(sourceRoot / header)) continue;
        const Includes includes = includesOf(file);
        ASSERT_FALSE(includes.ours.empty()) << file;
        EXPECT_EQ(includes.ours.front(), header);
    }
}

}  // namespace
}  // namespace vantrel
