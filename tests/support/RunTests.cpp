#include "support/TestRegistry.h"

#include <QCoreApplication>
#include <QTest>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    int failures = 0;
    for (const auto &make : vantrel::test::testRegistry()) {
        const std::unique_ptr<QObject> test = make();
        failures += QTest::qExec(test.get(), argc, argv);
    }
    return failures;
}
