// RapidJSON's reader does the parsing because it is the one of the well-kept JSON readers that has
// all three things a byte-preserving host needs: it tells where each token ends, it leaves numbers
// as they are spelled, and its iterative mode keeps its own stack, so that deep nesting is an error
// of ours and no overflow. simdjson wants padded copies of the input and hands out values on a
// cursor that moves once; Qt's reader turns numbers into doubles and forgets the order of members.

#include "filehost/json/JsonReader.h"

#include "filehost/Limits.h"

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <charconv>
#include <deque>
#include <string>
#include <utility>

namespace filehost::json {

namespace {

using Code = Problem::Code;
using Index = JsonText::Index;
using Kind = JsonText::Kind;
using Utf8 = rapidjson::UTF8<>;

constexpr unsigned parseFlags = rapidjson::kParseIterativeFlag |
                                rapidjson::kParseNumbersAsStringsFlag |
                                rapidjson::kParseValidateEncodingFlag;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// QString::fromUtf8 takes a leading U+FEFF for a byte order mark and drops it; in a JSON string it
/// is a character like any other.
QString fromUtf8(std::string_view bytes)
{
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80U; };
    if (std::all_of(bytes.begin(), bytes.end(), isAscii)) {
        return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
    }
    QString marks;
    while (startsWith(bytes, byteOrderMark)) {
        marks += QChar(QChar::ByteOrderMark);
        bytes.remove_prefix(byteOrderMark.size());
    }
    const QString text = QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
    return marks.isEmpty() ? text : marks + text;
}

/// A lone low surrogate, written as an escape, comes out of the reader as a sequence that UTF-8
/// does not have. (The reader itself refuses a lone high one.)
bool holdsSurrogate(std::string_view decoded)
{
    constexpr char lead = '\xED';
    constexpr unsigned char firstOfSurrogates = 0xA0;
    for (auto at = decoded.find(lead); at < decoded.size(); at = decoded.find(lead, at + 1)) {
        if (static_cast<unsigned char>(decoded[at + 1]) >= firstOfSurrogates) {
            return true;
        }
    }
    return false;
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isBetweenTokens(char byte)
{
    return byte == ' ' || byte == '\n' || byte == ',' || byte == ':' || byte == '\t' ||
           byte == '\r';
}

bool isOfWord(char byte)
{
    return byte == '-' || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

/// The offending text, short enough for a message: a string up to its end, a separator alone,
/// anything else up to the next separator.
QString excerpt(std::string_view rest)
{
    constexpr std::size_t longest = 32;
    if (rest.empty()) {
        return QStringLiteral("the end of the text");
    }
    if (rest.front() == '\0') {
        return QStringLiteral("a zero byte");
    }
    constexpr std::string_view separators = "\r\n\t ,:[]{}\"";
    const bool isString = rest.front() == '"';
    const std::size_t end = rest.find_first_of(isString ? "\"\r\n" : separators, 1);
    const bool isSeparator = !isString && separators.find(rest.front()) != std::string_view::npos;
    std::string_view shown = rest.substr(0, isSeparator ? 1 : end);
    QString more;
    if (shown.size() > longest) {
        std::size_t length = longest;
        while (length > 0 && isContinuation(shown[length])) {
            --length;
        }
        shown = shown.substr(0, length);
        more = QStringLiteral("...");
    }
    const QString quote = QStringLiteral("\"");
    return (isString ? QString() : quote) + fromUtf8(shown) + more + quote;
}

struct Wording {
    const char* message; ///< "%1" stands for the text found
    const char* advice;
};

Wording wording(rapidjson::ParseErrorCode code)
{
    switch (code) {
    case rapidjson::kParseErrorDocumentRootNotSingular:
        return {"the value has ended, but %1 follows", "a file holds one value; remove the rest"};
    case rapidjson::kParseErrorObjectMissName:
        return {"expected a key in double quotes, found %1",
                "write \"key\": value; behind the last member stands '}' without a comma"};
    case rapidjson::kParseErrorObjectMissColon:
        return {"expected ':' after the key, found %1", "write \"key\": value"};
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
        return {"expected ',' or '}' after the member, found %1",
                "put a comma between two members, and '}' after the last one"};
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
        return {"expected ',' or ']' after the element, found %1",
                "put a comma between two elements, and ']' after the last one"};
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
        return {"an escape needs four hexadecimal digits, found %1", "as in \\u00B0"};
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
        return {"half of a surrogate pair: %1", "write the character itself, in UTF-8"};
    case rapidjson::kParseErrorStringEscapeInvalid:
        return {"this may not stand in a string: %1",
                R"(write a line break as \n, a tab as \t, a backslash as \\)"};
    case rapidjson::kParseErrorStringMissQuotationMark:
        return {"the string has no end, found %1", "close it with a double quote"};
    case rapidjson::kParseErrorStringInvalidEncoding:
        return {"this is not UTF-8", "save the file with the encoding UTF-8"};
    case rapidjson::kParseErrorNumberTooBig:
        return {"the number is beyond what a double can hold: %1",
                "write it as text, in double quotes"};
    case rapidjson::kParseErrorNumberMissFraction:
        return {"expected a digit after the decimal point, found %1", "as in 1.0"};
    case rapidjson::kParseErrorNumberMissExponent:
        return {"expected a digit in the exponent, found %1", "as in 1e3"};
    default:
        return {"expected a value, found %1", "a value is an object, an array, a string in double "
                                              "quotes, a number, true, false or null"};
    }
}

ReadError toReadError(std::string_view text, rapidjson::ParseErrorCode code, std::size_t offset)
{
    const Wording words = wording(code);
    const std::string_view rest = text.substr(offset);
    QString message = QString::fromLatin1(words.message);
    message.replace(QLatin1String("%1"), excerpt(rest));
    const bool isComment = startsWith(rest, "//") || startsWith(rest, "/*");
    const char* const advice =
        isComment ? "JSON has no comments; a tree may have a member \"@comment\"" : words.advice;
    return {code == rapidjson::kParseErrorNumberTooBig ? Code::NumberRange : Code::Syntax,
            static_cast<quint32>(offset), message, QString::fromLatin1(advice)};
}

/// What RapidJSON calls, token by token. The reader tells only where a token ends; where it begins
/// follows from the end of the one before.
class NodeBuilder : public rapidjson::BaseReaderHandler<Utf8, NodeBuilder> {
public:
    NodeBuilder(std::string_view text, std::size_t start, std::vector<JsonText::Node>& nodes)
        : text(text), start(start), source(text.data() + start, text.size() - start), nodes(nodes),
          lastEnd(static_cast<quint32>(start))
    {}

    ReadErrors read();

    // RapidJSON's events; false ends the reading.
    bool Null() { return addScalar(Kind::Null); }
    bool Bool(bool value) { return addScalar(value ? Kind::True : Kind::False); }
    bool RawNumber(const char* digits, rapidjson::SizeType length, bool copy);
    bool String(const char* characters, rapidjson::SizeType length, bool copy);
    bool Key(const char* characters, rapidjson::SizeType length, bool copy);
    bool StartObject() { return open(Kind::Object); }
    bool EndObject(rapidjson::SizeType memberCount);
    bool StartArray() { return open(Kind::Array); }
    bool EndArray(rapidjson::SizeType elementCount);

private:
    struct KeyAt {
        std::string_view name;
        Index member;
    };

    void fail(ReadError error);
    bool add(Kind kind, Span value);
    bool addScalar(Kind kind) { return add(kind, takeToken()); }
    bool open(Kind kind);
    void close();
    void checkRange(Span token, bool whole);
    void checkString(Span token, std::string_view decoded);
    void checkKeys(Index object);
    Span takeToken();
    std::size_t placeOf(const rapidjson::ParseResult& error) const;
    quint32 nextBegin() const;
    std::string_view slice(Span span) const
    {
        return text.substr(span.begin, span.end - span.begin);
    }

    std::string_view text;
    std::size_t start; // behind the byte order mark
    rapidjson::MemoryStream source;
    std::vector<JsonText::Node>& nodes;
    std::vector<Index> containers; // not closed yet, outermost first
    std::vector<KeyAt> keys;       // of the object that closes; kept for its memory
    std::deque<std::string>
        decodedKeys; // what `keys` views of escaped ones; its strings don't move
    ReadErrors errors;
    quint32 lastEnd;       // of the last token
    Span pendingKey{0, 0}; // of the member whose value comes next
};

ReadErrors NodeBuilder::read()
{
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<parseFlags>(source, *this);
    if (result.IsError() && result.Code() != rapidjson::kParseErrorTermination) {
        fail(toReadError(text, result.Code(), placeOf(result)));
    } else if (!result.IsError() && start + source.Tell() < text.size()) {
        // A zero byte ends the reader's input, but not ours.
        fail(toReadError(text, rapidjson::kParseErrorDocumentRootNotSingular,
                         start + source.Tell()));
    }
    std::stable_sort(
        errors.list.begin(), errors.list.end(),
        [](const ReadError& left, const ReadError& right) { return left.offset < right.offset; });
    return std::move(errors);
}

std::size_t NodeBuilder::placeOf(const rapidjson::ParseResult& error) const
{
    if (error.Code() == rapidjson::kParseErrorDocumentEmpty) {
        return nextBegin();
    }
    std::size_t place = start + error.Offset();
    if (error.Code() == rapidjson::kParseErrorValueInvalid) {
        // The reader gives up in the middle of a word like "nothing", which begins like null.
        while (place > lastEnd && isOfWord(text[place - 1])) {
            --place;
        }
    }
    return place;
}

quint32 NodeBuilder::nextBegin() const
{
    // Most of what is read passes here; find_first_not_of would call a function for each byte.
    const auto* const begin = std::find_if_not(text.begin() + lastEnd, text.end(), isBetweenTokens);
    return static_cast<quint32>(begin - text.begin());
}

Span NodeBuilder::takeToken()
{
    const Span token{nextBegin(), static_cast<quint32>(start + source.Tell())};
    lastEnd = token.end;
    return token;
}

void NodeBuilder::fail(ReadError error)
{
    if (errors.list.size() < limits::problemCount) {
        errors.list.push_back(std::move(error));
    } else {
        ++errors.leftOut;
    }
}

bool NodeBuilder::add(Kind kind, Span value)
{
    if (nodes.size() >= limits::valueCount) {
        fail({Code::Size, value.begin,
              QStringLiteral("more than %1 values in one file").arg(limits::valueCount),
              QStringLiteral("split it into several instances")});
        return false;
    }
    nodes.push_back({kind, pendingKey, value, static_cast<Index>(nodes.size() + 1)});
    pendingKey = {0, 0};
    return true;
}

bool NodeBuilder::open(Kind kind)
{
    const quint32 begin = nextBegin();
    if (containers.size() >= limits::depth) {
        fail({Code::Depth, begin,
              QStringLiteral("more than %1 objects and arrays inside one another")
                  .arg(limits::depth),
              QStringLiteral("write a flatter tree")});
        return false;
    }
    lastEnd = begin + 1;
    containers.push_back(static_cast<Index>(nodes.size()));
    return add(kind, {begin, lastEnd});
}

void NodeBuilder::close()
{
    JsonText::Node& container = nodes[containers.back()];
    containers.pop_back();
    lastEnd = nextBegin() + 1;
    container.value.end = lastEnd;
    container.next = static_cast<Index>(nodes.size());
}

bool NodeBuilder::EndArray(rapidjson::SizeType /*elementCount*/)
{
    close();
    return true;
}

bool NodeBuilder::EndObject(rapidjson::SizeType memberCount)
{
    const Index object = containers.back();
    close();
    if (memberCount > 1) {
        checkKeys(object);
    }
    return true;
}

void NodeBuilder::checkKeys(Index object)
{
    keys.clear();
    decodedKeys.clear();
    for (const Index member : JsonText::Children(nodes, object)) {
        const std::string_view token = slice(nodes[member].key);
        std::string_view name = token.substr(1, token.size() - 2);
        if (name.find('\\') != std::string_view::npos) {
            name = decodedKeys.emplace_back(decodeString(token).toStdString());
        }
        keys.push_back({name, member});
    }
    std::sort(keys.begin(), keys.end(), [](const KeyAt& left, const KeyAt& right) {
        return std::tie(left.name, left.member) < std::tie(right.name, right.member);
    });
    for (std::size_t i = 1; i < keys.size(); ++i) {
        const Span first = nodes[keys[i - 1].member].key;
        const Span second = nodes[keys[i].member].key;
        if (keys[i].name == keys[i - 1].name) {
            fail({Code::DuplicateKey, second.begin,
                  QStringLiteral("the object has the key %1 twice").arg(excerpt(slice(second))),
                  QStringLiteral("rename or remove one of the two"), first.begin});
        }
    }
}

bool NodeBuilder::RawNumber(const char* /*digits*/, rapidjson::SizeType /*length*/, bool /*copy*/)
{
    const Span token = takeToken();
    const bool whole = slice(token).find_first_of(".eE") == std::string_view::npos;
    checkRange(token, whole);
    return add(whole ? Kind::Whole : Kind::Decimal, token);
}

void NodeBuilder::checkRange(Span token, bool whole)
{
    const std::string_view digits = slice(token);
    if (whole ? decodeWhole(digits).isValid() : !qIsInf(decodeDecimal(digits))) {
        return;
    }
    const QString message = whole
                                ? QStringLiteral("the whole number does not fit 64 bits: %1")
                                : QStringLiteral("the number is beyond what a double can hold: %1");
    fail({Code::NumberRange, token.begin, message.arg(excerpt(digits)),
          QStringLiteral("write it as text, in double quotes")});
}

bool NodeBuilder::String(const char* characters, rapidjson::SizeType length, bool /*copy*/)
{
    const Span token = takeToken();
    checkString(token, {characters, length});
    return add(Kind::String, token);
}

bool NodeBuilder::Key(const char* characters, rapidjson::SizeType length, bool /*copy*/)
{
    pendingKey = takeToken();
    checkString(pendingKey, {characters, length});
    return true;
}

void NodeBuilder::checkString(Span token, std::string_view decoded)
{
    if (holdsSurrogate(decoded)) {
        fail({Code::Syntax, token.begin,
              QStringLiteral("half of a surrogate pair in %1").arg(excerpt(slice(token))),
              QStringLiteral("write the character itself, in UTF-8")});
    }
}

/// Catches the one string of a text that is a string.
struct StringCatcher : rapidjson::BaseReaderHandler<Utf8, StringCatcher> {
    QString string;

    bool String(const char* characters, rapidjson::SizeType length, bool /*copy*/)
    {
        string = fromUtf8({characters, length});
        return true;
    }
};

} // namespace

ReadErrors readNodes(std::string_view text, std::vector<JsonText::Node>& nodes)
{
    const std::size_t start = startsWith(text, byteOrderMark) ? byteOrderMark.size() : 0;
    return NodeBuilder(text, start, nodes).read();
}

QString decodeString(std::string_view token)
{
    if (token.find('\\') == std::string_view::npos) {
        return fromUtf8(token.substr(1, token.size() - 2));
    }
    StringCatcher catcher;
    rapidjson::MemoryStream stream(token.data(), token.size());
    rapidjson::Reader().Parse(stream, catcher);
    return catcher.string;
}

QVariant decodeWhole(std::string_view token)
{
    const char* const end = token.data() + token.size();
    qlonglong number = 0;
    if (std::from_chars(token.data(), end, number).ec == std::errc()) {
        return number;
    }
    qulonglong large = 0;
    if (std::from_chars(token.data(), end, large).ec == std::errc()) {
        return large;
    }
    return {};
}

double decodeDecimal(std::string_view token)
{
    return QByteArray::fromRawData(token.data(), static_cast<int>(token.size())).toDouble();
}

} // namespace filehost::json
