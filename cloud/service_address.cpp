#include "cloud/service_address.h"

QString& serviceAddress()
{
    static QString address = QStringLiteral(QUILLBOX_SERVICE_URL);
    return address;
}
