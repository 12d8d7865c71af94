// What the library exports, and what it leaves to its loader.
#include <dlfcn.h>

#include <gmock/gmock.h>

#include "ocextra_fixture.h"
#include "symbol_files.h"

namespace ocextra_test {
namespace {

using ::testing::ContainerEq;
using ::testing::Each;
using ::testing::HasSubstr;

TEST(Exports, AreExactlyTheListedNamesWithTheirBinding) {
    EXPECT_THAT(library_exports(OCEXTRA_LIBRARY), ContainerEq(expected_exports(OCEXTRA_TEST_DIR)));
}

// Whether a library that comes after the executable, such as the C library or a sanitizer, defines the name.
bool is_of_a_library(const std::string &name) {
    return dlsym(RTLD_NEXT, name.c_str()) != nullptr;
}

TEST(Exports, TheLoaderSuppliesExactlyTheListedNames) {
    std::set<std::string> wanted;
    for (const std::string &name : library_undefined(OCEXTRA_LIBRARY)) {
        const std::string bare = name.substr(0, name.find('@'));
        if (!is_of_a_library(bare))
            wanted.insert(bare);
    }
    EXPECT_THAT(wanted, ContainerEq(expected_undefined(OCEXTRA_TEST_DIR)));
}

TEST(Exports, AreOperationsOfTheContractOnly) {
    const std::set<std::string> contract = expected_undefined();
    for (const std::string &name : expected_undefined(OCEXTRA_TEST_DIR))
        EXPECT_TRUE(contract.contains(name)) << name;
}

TEST(Exports, BesideTheContractOnlyTheCLibraryIsNeeded) {
#ifdef YFW_SANITIZED
    GTEST_SKIP() << "the sanitizers need their own libraries";
#endif
    std::vector<std::string> versioned;
    for (const std::string &name : library_undefined(OCEXTRA_LIBRARY))
        if (name.find('@') != std::string::npos)
            versioned.push_back(name);
    EXPECT_THAT(versioned, Each(HasSubstr("@GLIBC_")));
}

} // namespace
} // namespace ocextra_test
