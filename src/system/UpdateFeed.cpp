#include "system/UpdateFeed.h"

#include <QXmlStreamReader>
#include <memory>
#include <openssl/evp.h>

namespace orvane {

namespace {

constexpr char signatureMark[] = "<!-- sparkle-signatures:";
const QString appcastSpace = QStringLiteral("http://www.andymatuschak.org/xml-namespaces/sparkle");

struct SignatureBlock {
    QByteArray signature;
    qsizetype length = -1;
};

// The block after the mark: "edSignature: BASE64" and "length: N" lines, then "-->" and nothing
// but white space. The signed length must end exactly where the block begins.
std::optional<SignatureBlock> signatureBlock(const QByteArray& body, qsizetype at) {
    const qsizetype end = body.indexOf("-->", at);
    if (end < 0 || !body.mid(end + 3).trimmed().isEmpty()) return std::nullopt;
    SignatureBlock block;
    for (const QByteArray& line : body.mid(at, end - at).split('\n')) {
        const QByteArray text = line.trimmed();
        if (text.startsWith("edSignature:"))
            block.signature =
                QByteArray::fromBase64(text.mid(12).trimmed(), QByteArray::AbortOnBase64DecodingErrors);
        else if (text.startsWith("length:"))
            block.length = text.mid(7).trimmed().toLongLong();
    }
    if (block.signature.size() != 64 || block.length != at) return std::nullopt;
    return block;
}

QVersionNumber versionOf(const QString& text) {
    qsizetype suffix = 0;
    const QVersionNumber version = QVersionNumber::fromString(text.trimmed(), &suffix);
    return suffix == text.trimmed().size() ? version : QVersionNumber();
}

} // namespace

bool UpdateFeed::verify(const QByteArray& data, const QByteArray& signature, const QByteArray& publicKey) {
    if (publicKey.size() != 32 || signature.size() != 64) return false;
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr,
                                    reinterpret_cast<const unsigned char*>(publicKey.constData()), 32),
        &EVP_PKEY_free);
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!key || !context || EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
        return false;
    return EVP_DigestVerify(context.get(), reinterpret_cast<const unsigned char*>(signature.constData()), 64,
                            reinterpret_cast<const unsigned char*>(data.constData()),
                            static_cast<size_t>(data.size())) == 1;
}

UpdateFeed::Reading UpdateFeed::read(const QByteArray& body, const QByteArray& publicKey) {
    const qsizetype at = body.lastIndexOf(signatureMark);
    const auto block = at < 0 ? std::nullopt : signatureBlock(body, at);
    if (!block) return {std::nullopt, QStringLiteral("The update feed is not signed.")};
    const QByteArray signedPart = body.left(block->length);
    if (!verify(signedPart, block->signature, publicKey))
        return {std::nullopt, QStringLiteral("The update feed's signature does not match the release key.")};
    return parse(signedPart);
}

UpdateFeed::Reading UpdateFeed::parse(const QByteArray& xml) {
    QXmlStreamReader reader(xml);
    Reading reading;
    UpdateItem item;
    bool inItem = false;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::DTD)
            return {std::nullopt, QStringLiteral("The update feed declares entities.")};
        const QStringView name = reader.name();
        if (token == QXmlStreamReader::StartElement) {
            if (name == u"item") {
                item = {};
                inItem = true;
            } else if (inItem && name == u"title") {
                item.title = reader.readElementText();
            } else if (inItem && name == u"version" && reader.namespaceUri() == appcastSpace) {
                item.version = versionOf(reader.readElementText());
            } else if (inItem && name == u"shortVersionString" && reader.namespaceUri() == appcastSpace) {
                item.shortVersion = reader.readElementText().trimmed();
            } else if (inItem && name == u"releaseNotesLink" && reader.namespaceUri() == appcastSpace) {
                item.releaseNotes = QUrl(reader.readElementText().trimmed(), QUrl::StrictMode);
            } else if (inItem && name == u"enclosure" && item.version.isNull()) {
                item.version =
                    versionOf(reader.attributes().value(appcastSpace, QStringLiteral("version")).toString());
            }
        } else if (token == QXmlStreamReader::EndElement && name == u"item") {
            inItem = false;
            if (item.releaseNotes.scheme() != u"https") item.releaseNotes.clear();
            if (!item.version.isNull() && (!reading.newest || reading.newest->version < item.version))
                reading.newest = item;
        }
    }
    if (reader.hasError()) return {std::nullopt, QStringLiteral("The update feed is not well formed.")};
    return reading;
}

} // namespace orvane
