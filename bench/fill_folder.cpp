// fill_folder FOLDER TASKS: makes a folder of the program with a board of 5 columns and 10 swimlanes.

#include "BenchBoard.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const vantrel::LogWriter logWriter(vantrel::LogWriter::Output::Silent);
    const QCoreApplication application(argc, argv);
    if (argc < 3) {
        return 2;
    }
    vantrel::bench::fillFolder(QString::fromLocal8Bit(argv[1]), QByteArray(argv[2]).toInt());
    return 0;
}
