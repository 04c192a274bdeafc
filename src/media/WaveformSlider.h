#pragma once

#include <QSlider>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace orvane {

class Jobs;

// The player bar's timeline: a slider that draws the shape of the sound behind its knob. The peaks
// are read on a background job; a result for a file no longer shown is dropped by its token.
class WaveformSlider : public QSlider {
    Q_OBJECT
public:
    // Analyses run as jobs of `owner` in `jobs`, which they never hold.
    WaveformSlider(Jobs& jobs, QObject* owner, QWidget* parent = nullptr);
    ~WaveformSlider() override;

    // A new file (in a form a child process can be given) starts a new analysis; the same one lets
    // a running analysis go on; an empty one clears the waveform.
    void updateSource(const QString& path);
    const QString& source() const { return file; }
    int waveformSampleCount() const { return int(peaks.size()); }
    const std::vector<float>& waveform() const { return peaks; }
    bool scrubbing() const { return held; }
    bool drawsWaveform = true;
    std::optional<QString> decoderPath;

signals:
    void peaksArrived();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void analyse();

    Jobs& jobs;
    QObject* owner;
    QString file;
    std::vector<float> peaks;
    quint64 token = 0;
    std::shared_ptr<std::atomic_bool> cancelRunning;
    bool held = false;
};

} // namespace orvane
