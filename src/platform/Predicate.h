#pragma once

#include "platform/Value.h"

#include <memory>
#include <string>

// An object a predicate can look into: the glyph record, or a stand-in in tests.
class PredicateSubject {
public:
    virtual ~PredicateSubject();
    // The value at a dotted key path; null when the path leads nowhere. The key path "self"
    // names the subject as a whole, which is what SELF in a predicate reads.
    virtual Value valueForKeyPath(const std::string& keyPath) const = 0;
};

class PredicateNode;

// A parsed predicate in the platform's predicate-format language.
class Predicate {
public:
    // Parses the text; throws VLException "VLInvalidPredicateFormat" when it is not a predicate.
    static std::shared_ptr<Predicate> predicateWithFormat(const std::string& format);

    explicit Predicate(std::unique_ptr<const PredicateNode> root);
    ~Predicate();

    bool evaluateWithObject(const PredicateSubject& object) const;

    // The canonical text: equal predicates have equal text, and parsing it gives the same text.
    std::string predicateFormat() const { return _format; }

private:
    std::unique_ptr<const PredicateNode> _root;
    std::string _format;
};
