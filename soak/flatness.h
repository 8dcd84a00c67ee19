#pragma once

#include "app/dialogs/progress_cat_running_dialog.h"
#include "app/globals/settings.h"
#include "app/language/language_switch.h"
#include "tests/system.h"
#include "update/upgrade_app_window.h"

#include <QPixmapCache>
#include <QtTest>

/// What the process holds at rest, without what the client keeps on purpose (docs/architecture.md, "Kept behaviour"): a
/// translator for each switch of the language, the film of each busy window, and windows that are closed and not deleted.
class Flatness : public QObject
{
    qint64 m_ofLanguage = 0, m_ofFilm = 0, m_ofDialog = 0, m_ofOffer = 0; ///< bytes that one costs
    int m_films = 0;
    QVector<QVector<qint64>> m_levels;

    /// The first few apart, for which caches grow.
    template <class Make>
    static qint64 costOf(Make make)
    {
        qint64 before = 0;
        for (int i = -4; i < 8; ++i) {
            before = i == 0 ? memoryInUse() : before;
            make();
        }
        return (memoryInUse() - before) / 8;
    }
    template <class Window>
    static Window* open()
    {
        auto* window = new Window;
        window->show();
        QTest::qWait(60); // the film moves
        window->close();
        return window;
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_films += event->type() == QEvent::Polish && watched->inherits("ProgressCatRunningDialog") ? 1 : 0;
        return false;
    }

public:
    Flatness()
    {
        QPixmapCache::setCacheLimit(0); // once it is full, a window costs what it saved until then
        m_ofLanguage =
            costOf([n = 0]() mutable { switchLanguage(++n % 2 == 0 ? kLanguageEnglish : kLanguageChinese); });
        m_ofFilm = costOf([] { delete open<ProgressCatRunningDialog>(); });
        m_ofDialog = costOf(open<ProgressCatRunningDialog>) - m_ofFilm;
        m_ofOffer = costOf(open<UpgradeAppWindow>);
        qApp->installEventFilter(this);
    }

    void measure(int languages)
    {
        qint64 kept = languages * m_ofLanguage + m_films * m_ofFilm;
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            kept += window->inherits("ProgressCatRunningDialog") ? m_ofDialog : 0;
            kept += window->inherits("UpgradeAppWindow") ? m_ofOffer : 0;
        }
        m_levels.append({openHandles(), runningThreads(), memoryInUse() - kept});
    }

    /// A leak lifts each third of the run above the whole of the third before, and bytes by more than the megabyte that
    /// the heap is settling down by; a cache that fills does so once.
    bool isFlat() const
    {
        bool flat = true;
        for (int what = 0; what < 3; ++what) {
            QVector<qint64> thirds[3];
            for (int i = 0; i < m_levels.size(); ++i)
                thirds[3 * i / m_levels.size()].append(m_levels[i][what]);
            std::printf("%s at rest, by thirds:", what == 0 ? "handles" : what == 1 ? "threads" : "bytes");
            for (auto& third : thirds) {
                std::sort(third.begin(), third.end());
                std::printf(" %lld to %lld", third.value(0), third.value(third.size() - 1));
            }
            std::puts("");
            const bool tells = m_levels.size() >= 6; // a shorter run does not
            const qint64 slack = what == 2 ? 1 << 20 : 0;
            flat = flat &&
                   !(tells && thirds[1].first() > thirds[0].last() && thirds[2].first() > thirds[1].last() + slack);
        }
        return flat;
    }
};
