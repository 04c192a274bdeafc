#pragma once

#include <QStringList>
#include <QTextStream>
#include <functional>

// Each benchmark file registers its commands here, so adding one touches no other file.
struct BenchCommand {
    QString name;
    QString usage;
    std::function<int(const QStringList& args)> run;
};

int registerBenchCommand(const BenchCommand& command);
QTextStream& benchOut();

// Resident memory of this process in bytes, from the kernel's own count.
qint64 residentBytes();
// Milliseconds of wall time that `command` takes as a child process, or -1 if it failed.
double timeShell(const QString& command);

#define ORVANE_BENCH_COMMAND(id, name, usage, fn)                                                            \
    static const int orvaneBench_##id =                                                                      \
        registerBenchCommand({QStringLiteral(name), QStringLiteral(usage), fn});
