#include "update/network_release.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThread>

namespace {

constexpr int kPatienceMs = 300;
constexpr int kPollMs = 2;

/// Nothing runs but what came for this one reply.
bool finishesSoon(QNetworkReply* reply)
{
    QElapsedTimer clock;
    clock.start();
    while (!reply->isFinished() && clock.elapsed() < kPatienceMs) {
        QThread::msleep(kPollMs);
        QCoreApplication::sendPostedEvents(reply);
    }
    return reply->isFinished();
}

/// Asks the manager's thread for a sign of life. Without one the manager goes as soon as there is one.
bool answers(QNetworkAccessManager* manager)
{
    manager->setParent(nullptr);
    for (QNetworkReply* reply : manager->findChildren<QNetworkReply*>()) {
        if (reply->isRunning() && reply->error() == QNetworkReply::NoError)
            reply->abort();
    }
    // Nobody listens at port 0, so that this fails at once, by a thread that has taken note of all before it.
    QNetworkReply* answer = manager->get(QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1:0"))));
    if (finishesSoon(answer))
        return true;
    QObject::connect(answer, &QNetworkReply::finished, manager, &QObject::deleteLater);
    return false;
}

} // namespace

void releaseNetwork(QNetworkAccessManager* manager)
{
    if (answers(manager))
        delete manager;
}

void releaseNetworkLater(QNetworkAccessManager* manager)
{
    if (answers(manager))
        manager->deleteLater();
}
