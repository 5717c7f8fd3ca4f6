#include "c/handle_table.h"

#include <gmock/gmock.h>

#include <future>
#include <set>
#include <vector>

struct test_handle;
struct test_other_handle;

namespace VelmoraQuavin::internal {
namespace {

struct Tested;

}  // namespace

template <>
struct HandleKind<test_handle> {
    using Object = Tested;
    static constexpr const char* kName = "a test";
};
template <>
struct HandleKind<test_other_handle> {
    using Object = int;
    static constexpr const char* kName = "another test";
};

namespace {

// Releases another handle when it is destroyed.
struct Tested {
    int number = 0;
    test_handle* other = nullptr;

    explicit Tested(int given) : number(given) {}
    Tested(const Tested&) = delete;
    Tested& operator=(const Tested&) = delete;
    ~Tested();
};

using Table = HandleTable<test_handle>;

Tested::~Tested() {
    if (other != nullptr) {
        EXPECT_NO_THROW(Table::instance().remove(other));
    }
}

test_handle* add(int number) {
    return Table::instance().add(std::make_shared<Tested>(number));
}

TEST(HandleTable, FindsWhatAHandleStandsFor) {
    test_handle* const first = add(1);
    test_handle* const second = add(2);
    EXPECT_NE(first, second);
    EXPECT_EQ(objectOf(first)->number, 1);
    EXPECT_EQ(objectOf(second)->number, 2);
    Table::instance().remove(first);
    EXPECT_THROW(objectOf(first), InvalidArgumentsException);
    EXPECT_EQ(objectOf(second)->number, 2);
    Table::instance().remove(second);
}

TEST(HandleTable, KnowsOnlyItsOwnKind) {
    test_other_handle* const other =
        HandleTable<test_other_handle>::instance().add(std::make_shared<int>(1));
    EXPECT_THROW(objectOf(reinterpret_cast<test_handle*>(other)), InvalidArgumentsException);
    HandleTable<test_other_handle>::instance().remove(other);
}

TEST(HandleTable, KeepsAnObjectThatIsInUse) {
    test_handle* const handle = add(1);
    const std::shared_ptr<Tested> used = objectOf(handle);
    Table::instance().remove(handle);
    EXPECT_EQ(used->number, 1);
    EXPECT_EQ(used.use_count(), 1);
}

TEST(HandleTable, MayBeUsedByAnObjectThatGoes) {
    test_handle* const outer = add(1);
    test_handle* const inner = add(2);
    objectOf(outer)->other = inner;
    Table::instance().remove(outer);
    EXPECT_THROW(objectOf(inner), InvalidArgumentsException);
}

TEST(HandleTable, GivesEveryThreadHandlesOfItsOwn) {
    const auto use = [](int first) {
        std::set<test_handle*> used;
        for (int i = first; i < first + 2000; ++i) {
            test_handle* const handle = add(i);
            EXPECT_EQ(objectOf(handle)->number, i);
            Table::instance().remove(handle);
            EXPECT_THROW(Table::instance().remove(handle), InvalidArgumentsException);
            used.insert(handle);
        }
        return used;
    };
    auto other = std::async(std::launch::async, use, 10000);
    std::set<test_handle*> all = use(0);
    all.merge(other.get());
    EXPECT_EQ(all.size(), 4000U);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
