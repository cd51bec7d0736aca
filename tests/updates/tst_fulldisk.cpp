// For systems on which a process can limit the size of files that it writes, to simulate a full
// disk.

#include "updatecase.h"

#include <QDir>
#include <QNetworkProxyFactory>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

class tst_FullDisk : public QObject
{
    Q_OBJECT

private slots:
    void an_installer_that_does_not_fit_on_the_disk_is_neither_kept_nor_started();
};

void tst_FullDisk::an_installer_that_does_not_fit_on_the_disk_is_neither_kept_nor_started()
{
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    trust({loopback()});
    HttpsServer server(loopback());
    server.answers[versionPath] = {response(versionFile("1.02"))};
    server.answers[installerPath] = {response("#!/bin/sh\n" + QByteArray(100'000, ' ') + "\n")};
    const QTemporaryDir folder;
    QVERIFY(QDir::setCurrent(folder.path()));

    const MessageBoxes boxes({QMessageBox::Yes});
    QStringList lines;
    {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit full = {50'000, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &full), 0);
        const auto restore = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &before); });
        DebugLines log(DebugLines::DebugOnly);
        QString notes;
        QVERIFY(!checkForUpdate({.host = server.host()}, 101, notes));
        lines = log.takeAll();
    }
    QCOMPARE(lines.last(), u"Cannot write file"_s);
    QCOMPARE(boxes.shown.size(), 1);
    QCOMPARE(QDir(u"sw_fw"_s).entryList(QDir::Files | QDir::Hidden), QStringList());
}

QTEST_MAIN(tst_FullDisk)

#include "tst_fulldisk.moc"
