#include "platform/plist/xml/FormerRecord.h"

#include <algorithm>

namespace platform::plist {

namespace {

// What stands around a content. A boolean is its own tag.
struct Tags {
    std::string_view open;
    std::string_view close;
};

constexpr std::string_view trueTag = "<true/>";
constexpr std::string_view falseTag = "<false/>";

Tags tagsOf(XmlTag tag) {
    switch (tag) {
    case XmlTag::String:
        return {"<string>", "</string>"};
    case XmlTag::Real:
        return {"<real>", "</real>"};
    case XmlTag::Integer:
        return {"<integer>", "</integer>"};
    default:
        return {};
    }
}

} // namespace

bool FormerRecord::begin() {
    isUsable_ = false;
    if (pause_ > 0) {
        --pause_;
        return false;
    }
    contents_.clear();
    end_ = 0;
    return true;
}

void FormerRecord::note(std::size_t key, XmlTag tag, std::size_t startTagEnd, std::size_t end) {
    std::size_t start = startTagEnd;
    if (tag == XmlTag::True)
        start -= trueTag.size();
    if (tag == XmlTag::False)
        start -= falseTag.size();
    contents_.push_back({key, tag, end_, start - end_});
    end_ = end - tagsOf(tag).close.size();
}

void FormerRecord::finish(std::string_view record) {
    text_ = record;
    isUsable_ = isSound();
    if (!isUsable_)
        missed();
}

void FormerRecord::missed() {
    constexpr unsigned mostMisses = 63;
    misses_ = std::min(2 * misses_ + 1, mostMisses);
    pause_ = misses_;
    isUsable_ = false;
}

// Whether every content is of a known kind and stands between its tags, spelled as usual.
bool FormerRecord::isSound() const {
    std::size_t next = end_;
    std::string_view after = closing();
    for (auto content = contents_.rbegin(); content != contents_.rend(); ++content) {
        const std::size_t start = content->start + content->size;
        const auto text = std::string_view(text_).substr(start, next - start);
        const Tags tags = tagsOf(content->tag);
        const bool isKnown = !tags.open.empty() || text == trueTag || text == falseTag;
        if (!isKnown || !before(*content).ends_with(tags.open) || !after.starts_with(tags.close))
            return false;
        next = content->start;
        after = before(*content);
    }
    return !contents_.empty();
}

} // namespace platform::plist
