// update_service <port> <set-up> <version name> <version code>
// The cloud service in software, which offers a set-up to every client until it is killed.
#include "simulator/cloud/simulated_service.h"

#include <QCoreApplication>
#include <QFile>

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QFile setUp(arguments.value(2));
    if (arguments.size() != 5 || !setUp.open(QIODevice::ReadOnly))
        return 1;
    SimulatedService service(arguments[1].toInt());
    InstallerFile installer;
    installer.content = setUp.readAll();
    installer.size = installer.content.size();
    service.setInstaller(installer);
    service.setReply(QStringLiteral("GetSWVerssion"),
                     ServiceReply::enciphered(ServiceReply::success({
                         {QStringLiteral("swCategory"), QStringLiteral("Quillbox_Setup_")},
                         {QStringLiteral("swPath"), service.installerPath()},
                         {QStringLiteral("versionName"), arguments[3]},
                         {QStringLiteral("versionCode"), arguments[4]},
                         {QStringLiteral("remark"), QStringLiteral("羽毛盒 ") + arguments[3]},
                         {QStringLiteral("mustUpdate"), false},
                     })));
    return QCoreApplication::exec();
}
