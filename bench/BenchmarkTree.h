#pragma once

#include <string>

namespace vantrel::bench {

/// A temporary tree of empty files, always the same; removed at the end. Stops the program when the system
/// does not give one.
class BenchmarkTree {
public:
    struct Shape {
        int folders = 0;         ///< beside each other below the root
        int filesPerFolder = 0;  ///< in each of them
        int depth = 0;           ///< of a chain of folders below the root, with one file in each
    };

    explicit BenchmarkTree(Shape shape);
    BenchmarkTree(const BenchmarkTree&) = delete;
    BenchmarkTree& operator=(const BenchmarkTree&) = delete;
    ~BenchmarkTree();

    const std::string& root() const { return root_; }
    std::string folder(int number) const;
    int files() const { return shape_.folders * shape_.filesPerFolder + shape_.depth; }

private:
    Shape shape_;
    std::string root_;
};

}  // namespace vantrel::bench
