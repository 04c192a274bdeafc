#include "media/AudioPlayerBar.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "media/AudioPlayButton.h"
#include "media/AudioPreview.h"
#include "media/InlineVideoSurface.h"
#include "media/MediaDecoder.h"
#include "media/VideoPreview.h"
#include "media/WaveformSlider.h"
#include "support/MediaSamples.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLabel>
#include <QToolButton>
#include <cmath>

using namespace orvane;
using namespace orvane::test;

// The bar and the row buttons of a real window over real files, following both players.
class AudioPlayerBarTest : public QObject, public WindowFixture {
    Q_OBJECT

    AudioPlayerBar* bar() const { return w->widget()->findChild<AudioPlayerBar*>(); }
    AudioPlayButton* button(const QString& name) const {
        for (auto* b : w->widget()->findChildren<AudioPlayButton*>())
            if (b->isVisible() && b->audioPath() == tree->path(name)) return b;
        return nullptr;
    }
    AudioPreview& audio() const { return *w->services().audio(); }
    VideoPreview& video() const { return *w->services().video(); }

private slots:
    void init() {
        startProgram();
        makeSine(tree->path(), QStringLiteral("a.mp3"), 4);
        makeSine(tree->path(), QStringLiteral("b.flac"), 4);
        makeMedia(tree->path(), QStringLiteral("c.mp4"), QStringLiteral("testsrc=size=160x120:rate=25"), 4,
                  {QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")});
        tree->file(QStringLiteral("notes.txt"), "words");
        openWindow({}, true);
        // Off until a person turns it on; these tests watch it drawn.
        w->services().settings().setShowsWaveform(true);
    }
    void cleanup() {
        app->services().audio()->stop();
        app->services().video()->stop();
        stopProgram();
    }

    void time_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << "0:00";
        QTest::newRow("truncated") << 59.9 << "0:59";
        QTest::newRow("minute") << 61.0 << "1:01";
        QTest::newRow("no hours") << 3700.0 << "61:40";
        QTest::newRow("negative") << -5.0 << "0:00";
        QTest::newRow("not a number") << std::nan("") << "0:00";
    }
    void time() {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(AudioPlayerBar::time(seconds), text);
    }

    // Only media rows carry the button, and it is named for what a click does.
    void rowsCarryTheirButtons() {
        QTRY_VERIFY(button(QStringLiteral("a.mp3")));
        QVERIFY(button(QStringLiteral("c.mp4")));
        QVERIFY(!button(QStringLiteral("notes.txt")));
        QCOMPARE(button(QStringLiteral("a.mp3"))->accessibleName(), QStringLiteral("Play a.mp3"));
        QCOMPARE(button(QStringLiteral("c.mp4"))->accessibleName(), QStringLiteral("Preview video c.mp4"));
        QVERIFY(!bar()->expanded());
    }

    void barFollowsTheAudio() {
        QTRY_VERIFY(button(QStringLiteral("a.mp3")));
        button(QStringLiteral("a.mp3"))->click();
        QTRY_VERIFY(bar()->expanded());
        QCOMPARE(bar()->titleLabel()->text(), QStringLiteral("a"));
        QCOMPARE(bar()->timeline()->accessibleName(), QStringLiteral("Audio timeline"));
        QCOMPARE(button(QStringLiteral("a.mp3"))->accessibleName(), QStringLiteral("Pause a.mp3"));
        QCOMPARE(bar()->playButton()->accessibleName(), QStringLiteral("Pause audio"));
        // The folder's audio files in display order: the first has none before it.
        QVERIFY(!bar()->previousButton()->isEnabled());
        QVERIFY(bar()->nextButton()->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(bar()->elapsedLabel()->text(), QStringLiteral("0:01"), 10000);
        QCOMPARE(bar()->totalLabel()->text(), QStringLiteral("0:04"));
        QTRY_COMPARE_WITH_TIMEOUT(bar()->timeline()->waveformSampleCount(), 512, 10000);
        bar()->nextButton()->click();
        QCOMPARE(audio().current(), tree->path(QStringLiteral("b.flac")));
        QTRY_COMPARE(bar()->titleLabel()->text(), QStringLiteral("b"));
        QVERIFY(!bar()->nextButton()->isEnabled());
        bar()->playButton()->click();
        QVERIFY(!audio().playing());
        QCOMPARE(bar()->playButton()->accessibleName(), QStringLiteral("Play audio"));
    }

    // A knob held by the pointer stays where it is while the player keeps reporting.
    void heldKnobStays() {
        audio().toggle(tree->path(QStringLiteral("a.mp3")));
        QTRY_VERIFY_WITH_TIMEOUT(audio().elapsed() > 0.2, 10000);
        WaveformSlider* slider = bar()->timeline();
        slider->setSliderDown(true);
        slider->setValue(3500);
        QTRY_VERIFY_WITH_TIMEOUT(audio().elapsed() > 0.8, 10000);
        QCOMPARE(slider->value(), 3500);
        slider->setSliderDown(false);
        QTRY_VERIFY(audio().elapsed() > 3.3);
    }

    void barFollowsTheVideo() {
        QTRY_VERIFY(button(QStringLiteral("c.mp4")));
        button(QStringLiteral("c.mp4"))->click();
        QTRY_VERIFY(bar()->expanded());
        QCOMPARE(bar()->titleLabel()->text(), QStringLiteral("c"));
        QCOMPARE(bar()->timeline()->accessibleName(), QStringLiteral("Video timeline"));
        QCOMPARE(bar()->timeline()->waveformSampleCount(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(bar()->nextButton()->isEnabled(), 10000);
        QCOMPARE(bar()->nextButton()->toolTip(), QStringLiteral("Forward 10 seconds"));
        auto* surface = w->table()->viewport()->findChild<InlineVideoSurface*>();
        QVERIFY(surface);
        QTRY_VERIFY_WITH_TIMEOUT(!surface->frame().isNull(), 10000);
        // Audio started elsewhere takes over, and the bar with it.
        audio().toggle(tree->path(QStringLiteral("a.mp3")));
        QVERIFY(video().current().isEmpty());
        QCOMPARE(bar()->timeline()->accessibleName(), QStringLiteral("Audio timeline"));
        audio().stop();
        QTRY_VERIFY(!bar()->expanded());
    }

    void closingTheWindowEndsItsVideo() {
        QTRY_VERIFY(button(QStringLiteral("c.mp4")));
        button(QStringLiteral("c.mp4"))->click();
        QVERIFY(!video().current().isEmpty());
        VideoPreview* player = &video();
        QVERIFY(w->close());
        QTRY_VERIFY(player->current().isEmpty());
        openWindow();
    }

    // The peaks are the sound's own: silence, then a sine at half scale.
    void peaksOfAKnownSine() {
        const QString file =
            makeMedia(tree->path(), QStringLiteral("half.wav"),
                      QStringLiteral("aevalsrc='if(lt(t,2),0,0.5*sin(2*PI*440*t))':s=44100"), 4);
        const QString lookalike = tree->path(QStringLiteral("half") + QChar(0xFFFD) + QStringLiteral(".wav"));
        QVERIFY(QFile::copy(file, lookalike));
        WaveformSlider slider(w->jobs(), w->widget());
        slider.updateSource(file);
        QTRY_COMPARE_WITH_TIMEOUT(slider.waveformSampleCount(), 512, 10000);
        const auto& peaks = slider.waveform();
        for (int i : {0, 100, 250})
            QVERIFY2(peaks[size_t(i)] < 0.01f, qPrintable(QString::number(peaks[size_t(i)])));
        for (int i : {258, 400, 511})
            QVERIFY2(qAbs(peaks[size_t(i)] - 0.5f) < 0.02f, qPrintable(QString::number(peaks[size_t(i)])));
        slider.updateSource({});
        QCOMPARE(slider.waveformSampleCount(), 0);
    }

    // Off, the bar asks for no waveform and the last one is gone.
    void waveformFollowsTheSetting() {
        w->services().settings().setShowsWaveform(false);
        audio().toggle(tree->path(QStringLiteral("a.mp3")));
        QTRY_VERIFY(bar()->expanded());
        QVERIFY(bar()->timeline()->source().isEmpty());
        w->services().settings().setShowsWaveform(true);
        QTRY_COMPARE_WITH_TIMEOUT(bar()->timeline()->waveformSampleCount(), 512, 10000);
    }

    void emptyFileLeavesTheTimelineIdle() {
        tree->file(QStringLiteral("empty.mp3"));
        audio().toggle(tree->path(QStringLiteral("empty.mp3")));
        QTRY_VERIFY_WITH_TIMEOUT(!audio().failure().isEmpty(), 10000);
        QVERIFY(bar()->expanded());
        QVERIFY(!bar()->timeline()->isEnabled());
        QCOMPARE(bar()->elapsedLabel()->text(), QStringLiteral("0:00"));
        QCOMPARE(bar()->totalLabel()->text(), QStringLiteral("0:00"));
    }
};

ORVANE_TEST_MAIN(AudioPlayerBarTest)
#include "AudioPlayerBarTest.moc"
