#include "cloud/client_identity.h"

const QString kClientIdentity = QStringLiteral("com.quillbox.featherbox.win.app");
