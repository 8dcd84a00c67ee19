#pragma once

#include "device/printer_thread.h"

#include <QRandomGenerator>

#include <mutex>
#include <vector>

/// A page of black and white dots as random as its number: no two lines of two jobs look alike.
struct JobPattern
{
    JobPattern(int width, int lines, quint32 number)
        : picture(width, lines, QImage::Format_RGB32)
        , dots(width / 8 * lines, '\0')
    {
        QRandomGenerator random(number);
        for (int i = 0; i < dots.size(); ++i) {
            dots[i] = static_cast<char>(random.bounded(256));
            for (int bit = 0; bit < 8; ++bit) {
                const int x = i * 8 % width + bit;
                picture.setPixel(x, i * 8 / width, dots[i] & (0x80 >> bit) ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
            }
        }
    }

    QImage picture;
    QByteArray dots; ///< eight to a byte, as they are to come out on paper
};

/// Prints a picture as it is: print type 3 burns what is black and leaves the dots alone.
/// @return  the result codes that were reported
inline std::vector<int> runJob(const QImage& picture)
{
    PrinterThread thread;
    std::mutex mutex;
    std::vector<int> results;
    // In the job's own thread: a queued call would be a race to the thread sanitizer, which does not see Qt's queue.
    const auto keep = [&](int code) {
        const std::lock_guard<std::mutex> lock(mutex);
        results.push_back(code);
    };
    QObject::connect(&thread, &PrinterThread::resultReady, &thread, keep, Qt::DirectConnection);
    thread.setImage(picture, 3);
    thread.start();
    if (!thread.wait(40000))
        qFatal("the job does not end");
    const std::lock_guard<std::mutex> lock(mutex);
    return results;
}
