#include "patterns/Pattern.h"

#include <QRegularExpression>

#include <memory>
#include <utility>

namespace patterns {

/// A compiled pattern with its last answer.
class Pattern::Expression {
public:
    explicit Expression(const QString& text)
        : expression(text), valid(expression.isValid()), groups(expression.captureCount() > 0),
          groupNames(expression.namedCaptureGroups())
    {}

    /// The match in `url`, remembered until the next one. Not for an invalid expression.
    QRegularExpressionMatch match(const QString& url) const
    {
        if (url.isEmpty() || lastMatchIsTaken.test_and_set(std::memory_order_acquire)) {
            return expression.match(url);
        }
        if (lastUrl != url) {
            lastMatch = expression.match(url);
            lastUrl = url;
        }
        QRegularExpressionMatch match = *lastMatch;
        lastMatchIsTaken.clear(std::memory_order_release);
        return match;
    }

    const QRegularExpression expression;
    const bool valid; // matching an invalid one would make Qt write a warning of its own
    const bool groups;
    const QStringList groupNames;

private:
    mutable std::atomic_flag lastMatchIsTaken = ATOMIC_FLAG_INIT; // guards the two below
    mutable QString lastUrl;                                      // empty before the first
    mutable std::optional<QRegularExpressionMatch> lastMatch;
};

Pattern::Pattern(const QString& text) : ownText(text) {}

Pattern::Pattern(const Pattern& other) : ownText(other.ownText) {}

Pattern::Pattern(Pattern&& other) noexcept
    : ownText(std::move(other.ownText)), compiled(other.compiled.exchange(nullptr))
{}

Pattern& Pattern::operator=(Pattern&& other) noexcept
{
    ownText.swap(other.ownText);
    compiled = other.compiled.exchange(compiled);
    return *this;
}

Pattern::~Pattern()
{
    delete compiled.load(std::memory_order_acquire);
}

const Pattern::Expression& Pattern::expression() const
{
    const Expression* known = compiled.load(std::memory_order_acquire);
    if (known != nullptr) {
        return *known;
    }
    auto fresh = std::make_unique<const Expression>(ownText);
    if (compiled.compare_exchange_strong(known, fresh.get(), std::memory_order_acq_rel)) {
        return *fresh.release();
    }
    return *known; // another thread was faster
}

bool Pattern::isValid() const
{
    return expression().valid;
}

bool Pattern::hasGroups() const
{
    return expression().groups;
}

bool Pattern::findsMatch(const QString& url) const
{
    const Expression& compiledPattern = expression();
    return compiledPattern.valid && compiledPattern.match(url).hasMatch();
}

std::optional<GroupMatch> Pattern::matchGroups(const QString& url) const
{
    const Expression& compiledPattern = expression();
    if (!compiledPattern.groups) {
        return std::nullopt;
    }
    const QRegularExpressionMatch match = compiledPattern.match(url);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return GroupMatch{compiledPattern.groupNames, match};
}

bool Pattern::findsMatchInWellFormed(const QString& url) const
{
    const Expression& compiledPattern = expression();
    return compiledPattern.valid &&
           compiledPattern.expression
               .match(url, 0, QRegularExpression::NormalMatch,
                      QRegularExpression::DontCheckSubjectStringMatchOption)
               .hasMatch();
}

} // namespace patterns
