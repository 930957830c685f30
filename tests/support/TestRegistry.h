#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace vantrel::test {

/** The test classes of this program; RunTests.cpp runs them one after the other. */
inline std::vector<std::function<std::unique_ptr<QObject>()>> &testRegistry()
{
    static std::vector<std::function<std::unique_ptr<QObject>()>> registry;
    return registry;
}

template <typename Test>
struct RegisteredTest
{
    RegisteredTest()
    {
        testRegistry().emplace_back([] { return std::make_unique<Test>(); });
    }
};

} // namespace vantrel::test

/** Lets a program that links vantrel_test_main run this class. */
#define VANTREL_REGISTER_TEST(Test) static const vantrel::test::RegisteredTest<Test> registered##Test;
