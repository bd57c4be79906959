#pragma once

#include "mox/document/MaterialDocument.h"
#include "tests/support/Random.h"

#include <string>
#include <vector>

/// Documents that follow the schema, and nothing else, from a random source: parts of the one with
/// everything, whose texts are wild and whose nodes and edges mean nothing.
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
