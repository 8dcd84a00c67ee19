#include "content/page/page_file.h"

#include "content/page/embedded_pictures.h"
#include "content/page/markup_limits.h"

#include <QBuffer>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextCodec>

namespace {

constexpr int kVersion = 1;

constexpr int kHeadBytes = 1024; ///< in which the mark stands
constexpr int kFastPng = 80;     ///< Qt's quality for zlib level 1: an eighth larger, five times as fast
constexpr char kEnd[] = "</html>";

QString mark(int caret)
{
    return QStringLiteral(R"(<meta name="quillbox-page" content="%1" /><meta name="quillbox-caret" content="%2" />)")
        .arg(kVersion)
        .arg(caret);
}

/// Value of a <meta> of the client's own, or -1.
int markedValue(const QByteArray& content, const QString& name)
{
    const QRegularExpression pattern(QStringLiteral("<meta name=\"%1\" content=\"(\\d{1,9})\"").arg(name));
    const QString number = pattern.match(QString::fromLatin1(content.left(kHeadBytes))).captured(1);
    return number.isEmpty() ? -1 : number.toInt();
}

bool isHtml(const QByteArray& content)
{
    static const QRegularExpression tag(QStringLiteral("<(!doctype html|html|body)[\\s>]"),
                                        QRegularExpression::CaseInsensitiveOption);
    return tag.match(QString::fromLatin1(content.left(64 << 10))).hasMatch();
}

PageFault readAll(const QString& path, QByteArray* content)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.isSequential()) // devices have no end
        return PageFault::CannotRead;
    if (file.size() > kMostFileBytes)
        return PageFault::TooLarge;
    *content = file.readAll();
    return file.error() == QFileDevice::NoError ? PageFault::None : PageFault::CannotRead;
}

PageFault checkKind(const QByteArray& content, PageOrigin origin)
{
    const int version = markedValue(content, QStringLiteral("quillbox-page"));
    if (content.contains('\0') || (version < 0 && (origin == PageOrigin::Client || !isHtml(content))))
        return PageFault::NotAPage;
    if (version >= 0 && version != kVersion)
        return PageFault::OtherVersion;
    if (version >= 0 && !content.endsWith(kEnd))
        return PageFault::Damaged;
    return PageFault::None;
}

bool decodeText(const QByteArray& text, QString* html)
{
    const QTextCodec* codec = QTextCodec::codecForHtml(text, QTextCodec::codecForName("UTF-8"));
    QTextCodec::ConverterState state;
    *html = codec->toUnicode(text.constData(), text.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace

const char* describe(PageFault fault)
{
    static const char* const words[] = {"whole",   "cannot be read", "too large",
                                        "no page", "damaged",        "other version"};
    return words[static_cast<int>(fault)];
}

PageFault readPage(const QString& file, PageOrigin origin, PageContent* page)
{
    QByteArray content;
    PageFault fault = readAll(file, &content);
    if (fault == PageFault::None)
        fault = checkKind(content, origin);
    if (fault != PageFault::None)
        return fault;

    PageContent read;
    read.caret = qMax(0, markedValue(content, QStringLiteral("quillbox-caret")));
    const bool own = markedValue(content, QStringLiteral("quillbox-page")) == kVersion;
    EmbeddedPictures embedded = takePictures(content);
    content.clear();
    if (!isWithinLimits(embedded.html) || (own && embedded.tooLarge > 0))
        return PageFault::TooLarge;
    if (own && embedded.broken > 0)
        return PageFault::Damaged;
    if (!decodeText(embedded.html, &read.html))
        return own ? PageFault::Damaged : PageFault::NotAPage;
    read.pictures = std::move(embedded.pictures);
    *page = std::move(read);
    return PageFault::None;
}

bool PageWriter::encode(const QVector<QImage>& pictures)
{
    QHash<qint64, QByteArray> pngs;
    for (const QImage& picture : pictures) {
        QByteArray& png = pngs[picture.cacheKey()];
        if (!png.isEmpty())
            continue;
        png = m_pngs.value(picture.cacheKey());
        QBuffer buffer(&png);
        if (!png.isEmpty() || picture.isNull())
            continue;
        // Rows of single bits end in some that nobody set, and these would get into the file.
        const bool isBits = picture.depth() == 1;
        if (!(isBits ? picture.convertToFormat(QImage::Format_Indexed8) : picture).save(&buffer, "PNG", kFastPng))
            return false;
    }
    m_pngs = pngs;
    return true;
}

/// The text with the pictures in the places of their names.
bool PageWriter::writeText(const QByteArray& text, const QVector<QImage>& pictures, QIODevice& out) const
{
    // A disk that fills up takes a part, which Qt tells by the number alone.
    const auto put = [&out](const QByteArray& part) { return out.write(part) == part.size(); };
    const QByteArray name = "\"picture:";
    int from = 0;
    for (int begin = text.indexOf(name); begin >= 0; begin = text.indexOf(name, from)) {
        const int end = text.indexOf('"', begin + 1);
        const int index = text.mid(begin + name.size(), end - begin - name.size()).toInt();
        const QByteArray png = m_pngs.value(pictures.value(index).cacheKey());
        if (!put(text.mid(from, begin + 1 - from)) || !put("data:image/png;base64,") || !put(png.toBase64()))
            return false;
        from = end;
    }
    return put(text.mid(from));
}

QString PageWriter::write(const PageContent& page, const QString& file)
{
    if (!encode(page.pictures))
        return tr("有一张图片无法保存");
    qint64 pixels = 0;
    for (const QImage& picture : page.pictures)
        pixels += picture.sizeInBytes();
    QByteArray text = page.html.toUtf8();
    text.insert(text.indexOf("<head>") + 6, mark(page.caret).toUtf8());
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return out.errorString();
    // What is left in the buffer fails here or nowhere: committing does not tell.
    QString error;
    if (!writeText(text, page.pictures, out) || !out.flush())
        error = tr("文件没有写完，磁盘可能已满");
    else if (!isWithinLimits(text) || pixels > kMostDecodedBytes || out.pos() > kMostFileBytes)
        error = tr("页面太大");
    if (!error.isEmpty())
        out.cancelWriting();
    const bool isWhole = out.commit();
    return isWhole || !error.isEmpty() ? error : out.errorString();
}
