#include "mididevices.h"

#include <QFileInfo>
#include <QTemporaryFile>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Captures standard error during its lifetime.
class StandardError
{
public:
    StandardError()
        : m_saved(dup(STDERR_FILENO))
    {
        m_file.open();
        dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StandardError()
    {
        dup2(m_saved, STDERR_FILENO);
        close(m_saved);
    }
    StandardError(const StandardError &) = delete;
    StandardError &operator=(const StandardError &) = delete;

    QByteArray text()
    {
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    QTemporaryFile m_file;
    int m_saved;
};

} // namespace

class tst_NoMidi : public QObject
{
    Q_OBJECT

private slots:
    void without_a_midi_system_the_lists_are_empty_and_nothing_is_printed();
};

void tst_NoMidi::without_a_midi_system_the_lists_are_empty_and_nothing_is_printed()
{
    if (QFileInfo::exists(u"/dev/snd/seq"_s))
        QSKIP("This system has an ALSA sequencer.");
    qputenv("JACK_DEFAULT_SERVER", "rallyvane-none");
    StandardError printed;
    for (int asked = 0; asked < 2; ++asked) {
        QCOMPARE(MidiDevIn::deviceCount(), 0U);
        QCOMPARE(MidiDevIn::deviceNameAt(0), QString());
        QCOMPARE(MidiDevOut::deviceCount(), 0U);
        QCOMPARE(midiInLeft.open(0, nullptr), unsigned(MMSYSERR_BADDEVICEID));
        midiInLeft.stop();
        QCOMPARE(midiInLeft.close(), unsigned(MMSYSERR_INVALHANDLE));
    }
    QCOMPARE(printed.text(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_NoMidi)

#include "tst_nomidi.moc"
