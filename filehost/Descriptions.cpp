#include "filehost/Descriptions.h"

#include "filehost/json/JsonText.h"

#include <algorithm>
#include <deque>

namespace filehost {

namespace {

struct HandedOut {
    QString text;
    QString file;
};

// A text is parsed right after it was handed out; more than one is remembered for a host that
// fetches several first.
constexpr std::size_t mostRemembered = 8;

thread_local std::deque<HandedOut> handedOut; // the latest first

} // namespace

QString readDescription(const File& file, QList<Problem>& problems)
{
    std::optional<QByteArray> bytes = readBytes(file, problems);
    if (!bytes) {
        return {};
    }
    if (bytes->startsWith("\xEF\xBB\xBF")) {
        bytes->remove(0, 3); // QString::fromUtf8 drops a byte order mark as well
    }
    QString text = QString::fromUtf8(*bytes);
    if (bytes->isEmpty() || text.toUtf8() != *bytes) {
        // As text, what is no UTF-8 would turn into other characters without a word.
        json::JsonText::parse(*bytes, file.shown, problems);
        return {};
    }
    return text;
}

void rememberHandedOut(const QString& text, const QString& shownFile)
{
    handedOut.push_front({text, shownFile});
    if (handedOut.size() > mostRemembered) {
        handedOut.pop_back();
    }
}

QString fileOfHandedOut(const QString& text)
{
    const auto found = std::find_if(handedOut.begin(), handedOut.end(),
                                    [&](const HandedOut& known) { return known.text == text; });
    return found == handedOut.end() ? QString() : found->file;
}

} // namespace filehost
