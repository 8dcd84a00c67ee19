#include "demo/demo_service.h"

#include "cloud/service_address.h"

namespace {

constexpr qint64 kInstallerBytes = qint64{12} * 1024 * 1024;
constexpr qint64 kBytesPerSecond = qint64{2} * 1024 * 1024;

const char* const kNotes = "羽毛盒 V1.1.0\n"
                           "· 打印前可以预览整页\n"
                           "· 截图可以在打印前裁剪\n"
                           "· 图片的灰度更细腻，小字更清晰\n"
                           "· 修正了换纸后首行偏淡的问题\n"
                           "\n"
                           "Quillbox V1.1.0\n"
                           "- Shows a preview of the whole page before it prints\n"
                           "- Lets you crop a screen capture before it prints\n"
                           "- Prints finer greys and sharper small text\n"
                           "- Prints the first line after a change of paper as dark as the others\n";

QJsonObject offer(const QString& installer)
{
    return {
        {QStringLiteral("swCategory"), QStringLiteral("Quillbox_Setup_")},
        {QStringLiteral("swPath"), installer},
        {QStringLiteral("versionCode"), QStringLiteral("110")},
        {QStringLiteral("versionName"), QStringLiteral("V1.1.0")},
        {QStringLiteral("remark"), QString::fromUtf8(kNotes)},
        {QStringLiteral("mustUpdate"), false},
    };
}

QJsonObject account()
{
    return {
        {QStringLiteral("userId"), 1},
        {QStringLiteral("nickName"), QString::fromUtf8("访客 (guest)")},
    };
}

} // namespace

DemoService::DemoService()
{
    InstallerFile installer;
    installer.size = kInstallerBytes;
    installer.bytesPerSecond = kBytesPerSecond;
    m_service.setInstaller(installer);
    m_service.setReply(QStringLiteral("GetSWVerssion"),
                       ServiceReply::enciphered(ServiceReply::success(offer(m_service.installerPath()))));
    m_service.setReply(QStringLiteral("login"), ServiceReply::enciphered(ServiceReply::success(account())));
    serviceAddress() = m_service.address();
}
