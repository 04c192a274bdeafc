#include "search/IndexSearch.h"
#include "platform/NativePath.h"

#include "search/SearchText.h"

#include <QProcess>
#include <QStandardPaths>
#include <sys/stat.h>

namespace orvane {

namespace {
// Any byte outside printable ASCII: under the C locale a run of these covers one accented letter,
// precomposed or as a letter with combining marks.
const QString other = QStringLiteral("[^ -~]");

QString escaped(QChar c) {
    static const QString special = QStringLiteral("\\.[]()*+?{}|^$");
    return special.contains(c) ? QString(u'\\') + c : QString(c);
}

QStringList arguments(const QString& pattern) {
    QStringList args{QStringLiteral("-i"), QStringLiteral("-b"), QStringLiteral("-0"),
                     QStringLiteral("--regex"), pattern};
    if (const QString db = IndexSearch::database(); !db.isEmpty()) args << QStringLiteral("-d") << db;
    return args;
}

// Waits for the program, giving up when the run has been superseded.
bool finish(QProcess& process, const std::atomic<quint64>& generation, quint64 token) {
    while (!process.waitForFinished(100)) {
        if (process.state() == QProcess::NotRunning) return false;
        if (generation.load() != token) {
            process.kill();
            process.waitForFinished(-1);
            return false;
        }
    }
    return process.exitStatus() == QProcess::NormalExit;
}

IndexSearch::Answer unavailable(const QString& reason) {
    return {false, {}, reason};
}

// plocate reads an empty file as a failed read and says only that.
bool emptyFile(const QString& path) {
    struct stat st;
    return !path.isEmpty() && stat(NativePath::encode(path).constData(), &st) == 0 && S_ISREG(st.st_mode) &&
           st.st_size == 0;
}
} // namespace

QString IndexSearch::database() {
    return qEnvironmentVariable("ORVANE_LOCATE_DB");
}

QString IndexSearch::widePattern(const QString& folded) {
    QString pattern;
    for (QChar c : folded) {
        if (c.unicode() >= 0x80)
            pattern += other + u'+';
        else if (c.isLetterOrNumber())
            pattern += u'(' + escaped(c) + other + QStringLiteral("*|") + other + QStringLiteral("+)");
        else
            pattern += escaped(c) + other + u'*';
    }
    return pattern;
}

IndexSearch::Answer IndexSearch::run(const QString& text, const std::atomic<quint64>& generation,
                                     quint64 token) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("plocate"));
    const QString db = database();
    if (program.isEmpty()) return unavailable(QStringLiteral("plocate is not installed"));
    if (emptyFile(db))
        return unavailable(NativePath::display(db) + QStringLiteral(": the database is empty"));
    const QString folded = SearchText::fold(text, true);
    if (folded.isEmpty()) return {true, {}, {}}; // only marks: nothing is named by them alone
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments(widePattern(folded)));
    if (!finish(process, generation, token)) return unavailable(process.errorString());
    // plocate says 1 both for no match and for failure; only failure explains itself.
    const int code = process.exitCode();
    const QString error = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    if (code > 1 || (code == 1 && !error.isEmpty()))
        return unavailable(error.isEmpty() ? QStringLiteral("plocate failed") : error);
    Answer answer{true, {}, {}};
    for (const QByteArray& raw : process.readAllStandardOutput().split('\0')) {
        if (raw.isEmpty()) continue;
        const QString path = NativePath::decode(raw);
        if (SearchText::containsFolded(SearchText::fileName(path).toString(), folded)) answer.paths << path;
    }
    return answer;
}

} // namespace orvane
