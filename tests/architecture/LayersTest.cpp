#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
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
