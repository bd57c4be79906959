#include "mox/editor/ErrorJson.h"

#include "mox/graph/GraphChange.h"
#include "mox/json/RecordJson.h"

namespace Mox::Host {

Json DescribeError(const HostError& error)
{
    Json json = {{"message", error.Message}};
    AddPlace(error.Where, json);
    if (const auto* refusal = dynamic_cast<const RefusedStep*>(&error))
        json["step"] = refusal->Step;
    return json;
}

} // namespace Mox::Host
