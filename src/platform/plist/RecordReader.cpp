#include "platform/plist/RecordReader.h"

#include "platform/plist/xml/RecordWalk.h"

namespace platform::plist {

RecordsOutcome visitRecords(std::string_view bytes, std::span<const std::string_view> keys,
                            const std::function<bool(const Record&)>& visit) {
    RecordWalk walk(keys);
    return walk.run(bytes, [&](const Record& record, const Value*) { return visit(record); });
}

} // namespace platform::plist
