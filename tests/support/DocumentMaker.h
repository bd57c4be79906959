#pragma once

#include "mox/document/MaterialDocument.h"
#include "tests/support/Random.h"

#include <string>
#include <vector>

/// Makes random documents that follow the schema but no other rule: parts of the sample document,
/// with arbitrary strings, whose nodes and edges have no meaning.
class DocumentMaker
{
public:
    explicit DocumentMaker(Random& random);

    Mox::Host::MaterialDocument Make();

private:
    template <class Records>
    void Thin(Records& records)
    {
        erase_if(records, [this](const auto&) { return _random.Below(2) == 0; });
    }

    Mox::Host::DocumentComments Comments();
    std::string Text();

    Random& _random;
    const Mox::Host::MaterialDocument _everything;
};
