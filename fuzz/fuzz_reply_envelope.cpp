#include "cloud/models/get_sw_version_model.h"
#include "cloud/models/user_model.h"
#include "cloud/reply_envelope.h"
#include "simulator/cloud/service_crypto.h"

#include <QJsonDocument>

// A record takes what has the right type and keeps the rest as it was.
static void checkRecord(BaseModel&& record, const QJsonObject& object)
{
    QJsonObject before = record.toJson();
    for (auto field = before.begin(); field != before.end(); ++field)
        *field = field->isString() ? QJsonValue("kept") : field->isBool() ? QJsonValue(true) : QJsonValue(7);
    record.parse(before);
    record.parse(object);
    const QJsonObject after = record.toJson();
    for (const QString& name : before.keys()) {
        const QJsonValue value = object[name].isDouble() ? object[name].toInt() : object[name];
        Q_ASSERT(after[name] == (value.type() == before[name].type() ? value : before[name]));
    }
}

/// Qt's parser loses an object or an array whose name comes twice in one object.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libQt5Core.so";
}

// Any reply is read; of what is enciphered, and of ASCII that is not, the object within says what it is.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    const QByteArray body(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    const ReplyEnvelope plain = readEnvelope(QString::fromLatin1(body));
    const ReplyEnvelope enciphered = readEnvelope(R"({"data": ")" + serviceEncipher(body) + "\"}");
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    const bool isAscii = std::all_of(body.begin(), body.end(), [](char c) { return c > 0; });
    Q_ASSERT(enciphered.enciphered && (plain.enciphered || plain.plainText == QString::fromLatin1(body)));
    if (isAscii && !object.isEmpty() && !plain.enciphered) {
        const bool succeeds = object["code"] == 1 && object["result"].isString() && object["content"].isObject();
        Q_ASSERT((plain.outcome == ReplyEnvelope::Outcome::Success) == succeeds && plain.text == enciphered.text);
        Q_ASSERT(plain.outcome == enciphered.outcome && plain.content == enciphered.content);
    }
    checkRecord(GetSWVersionModel(), plain.content);
    checkRecord(UserModel(), plain.content);
    return 0;
}
