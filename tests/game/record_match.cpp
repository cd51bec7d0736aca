#include "matchrecording.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>

#include <cstdio>

// record_match IN > OUT: plays the inputs of IN and writes them with the resulting states.
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    if (argc != 2) {
        std::fputs("usage: record_match IN > OUT\n", stderr);
        return 2;
    }
    QFile script(QCoreApplication::arguments().at(1));
    if (!script.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", argv[1], qPrintable(script.errorString()));
        return 1;
    }
    const Recording recording = recordMatch(script.readAll());
    if (!recording.error.isEmpty()) {
        std::fprintf(stderr, "%s, %s\n", argv[1], recording.error.constData());
        return 1;
    }
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly) || out.write(recording.text) < 0 || !out.flush()) {
        std::fprintf(stderr, "cannot write: %s\n", qPrintable(out.errorString()));
        return 1;
    }
    return 0;
}
