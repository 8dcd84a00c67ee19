#include "content/page/embedded_pictures.h"

#include "content/page/picture_file.h"

#include <QtDebug>

namespace {

/// A piece of the HTML: begin and length.
struct Piece
{
    int begin = 0;
    int size = 0;
};

bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool startsWith(const QByteArray& html, int at, const char* word)
{
    return qstrnicmp(html.constData() + at, word, static_cast<uint>(qstrlen(word))) == 0;
}

/// The value of an attribute, without quotation marks. `at` stands behind the "=" and then behind the value.
Piece takeValue(const QByteArray& html, int& at)
{
    while (at < html.size() && isSpace(html[at]))
        ++at;
    const char quote = at < html.size() ? html[at] : '\0';
    if (quote == '"' || quote == '\'') {
        const int begin = at + 1;
        const int end = html.indexOf(quote, begin);
        const Piece value{begin, (end < 0 ? html.size() : end) - begin};
        at = qMin(begin + value.size + 1, html.size());
        return value;
    }
    const int begin = at;
    while (at < html.size() && !isSpace(html[at]) && html[at] != '>')
        ++at;
    return {begin, at - begin};
}

/// The data: address of a picture whose tag's attributes begin at `at`, which is left behind the tag; size 0 for none.
Piece takeDataAddress(const QByteArray& html, int& at)
{
    Piece address;
    while (at < html.size() && html[at] != '>') {
        const int name = at;
        while (at < html.size() && !isSpace(html[at]) && html[at] != '=' && html[at] != '>')
            ++at;
        const bool isSource = at - name == 3 && startsWith(html, name, "src");
        while (at < html.size() && isSpace(html[at]))
            ++at;
        if (at >= html.size() || html[at] != '=')
            continue;
        const Piece value = takeValue(html, ++at);
        if (isSource && address.size == 0 && startsWith(html, value.begin, "data:"))
            address = value;
    }
    return address;
}

/// @param budget  bytes of pixels that there is still room for, less this picture's afterwards
/// @param isLarge  set where there is not enough
QImage decode(const QByteArray& address, qint64& budget, bool& isLarge)
{
    QImage picture = pictureFromData(dataAddressContent(address));
    isLarge = picture.sizeInBytes() > budget;
    if (isLarge)
        return {};
    budget -= picture.sizeInBytes();
    return picture;
}

} // namespace

QByteArray dataAddressContent(const QByteArray& address)
{
    const int comma = address.indexOf(',');
    if (comma < 0)
        return {};
    QByteArray body = address.mid(comma + 1);
    if (body.contains('%'))
        body = QByteArray::fromPercentEncoding(body);
    if (!address.left(comma).toLower().endsWith(";base64"))
        return body;
    for (const char c : {' ', '\n', '\r', '\t'}) // of files whose lines are broken by hand
        body.replace(c, "");
    return QByteArray::fromBase64Encoding(body, QByteArray::AbortOnBase64DecodingErrors).decoded;
}

EmbeddedPictures takePictures(const QByteArray& html)
{
    EmbeddedPictures result;
    qint64 budget = kMostDecodedBytes;
    int copied = 0;
    for (int at = html.indexOf('<'); at >= 0; at = html.indexOf('<', at)) {
        ++at;
        if (!startsWith(html, at, "img") || at + 3 >= html.size() || !(isSpace(html[at + 3]) || html[at + 3] == '/'))
            continue;
        at += 4;
        const Piece address = takeDataAddress(html, at);
        if (address.size == 0)
            continue;
        bool isLarge = false;
        const auto addressBytes = QByteArray::fromRawData(html.constData() + address.begin, address.size);
        const QImage picture = decode(addressBytes, budget, isLarge);
        result.tooLarge += isLarge;
        result.broken += picture.isNull() && !isLarge;
        if (picture.isNull())
            qDebug() << "a picture of a page is left out:" << (isLarge ? "too large" : "does not decode");
        result.html.append(html.constData() + copied, address.begin - copied);
        result.html += "picture:" + QByteArray::number(result.pictures.size());
        result.pictures += picture;
        copied = address.begin + address.size;
    }
    result.html.append(html.constData() + copied, html.size() - copied);
    return result;
}
