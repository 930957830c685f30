#pragma once

#include <QString>

namespace vantrel {

enum class AppEnvironment { Production, Testing };

/**
 * Where this run keeps its files. Built once by whoever builds Services: the program names the user's data
 * folder, a test names a temporary one.
 */
struct AppConfig
{
    AppEnvironment environment = AppEnvironment::Production;
    /** Absolute path of the application directory: database, configuration files, user defaults and lock. */
    QString directory;

    bool isTesting() const { return environment == AppEnvironment::Testing; }

    QString filePath(const QString &fileName) const { return directory + u'/' + fileName; }
};

/** The application directory of the running program: "Vantrel" in the desktop's folder for user data. */
QString userApplicationDirectory();

} // namespace vantrel
