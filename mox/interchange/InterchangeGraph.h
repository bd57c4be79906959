#pragma once

#include "mox/interchange/InterchangeValue.h"
#include "mox/interchange/MaterialBuilder.h"
#include "mox/interchange/StandardNodes.h"

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Mox::Host {

/// A MaterialX node cannot be carried over; what() says why.
class NoCounterpart : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Makes nodes of a material for MaterialX nodes, as the table of standard nodes says.
class InterchangeGraph
{
public:
    using Values = std::map<std::string, InterchangeValue>;

    /// The MaterialX node that is being carried over.
    struct Site
    {
        /// The place of a step of a formula, which has a name of its own.
        Site Step(const std::string& name) const;

        /// A new node of a type, with position and description unless it is a step.
        DocumentNode Record(const std::string& type) const;

        std::string Id;
        std::string Owner; ///< of a step of a formula: the id of the MaterialX node
        std::string Type;  ///< of MaterialX
        int Line = 0;
        bool IsNormalMap = false; ///< an image that only normal maps read
        std::optional<float> PositionX;
        std::optional<float> PositionY;
        std::string Description;
        bool IsStep = false; ///< of a formula
    };

    /// @param builder must outlive the object
    explicit InterchangeGraph(MaterialBuilder& builder) : _builder(builder) {}

    /// The first alternative whose conditions hold, or null.
    static const InterchangeAlternative* Choose(const InterchangeNode& node, const Values& inputs,
                                                const std::string& type);

    static bool Holds(const std::vector<InterchangeCondition>& conditions, const Values& inputs,
                      const std::string& type);

    /// What an input is without a value in the file: numbers, a text, or the name of what the mesh
    /// or the scene supplies.
    static InterchangeValue Default(const std::string& text);

    /// Makes the node for a value that the mesh or the scene supplies; other values stay as they
    /// are.
    InterchangeValue Supply(const InterchangeValue& value, const Site& site);

    /// Makes the nodes of an alternative that carries something over.
    /// @param inputs of the MaterialX node, all of them
    /// @returns the outputs by name
    Values Make(const InterchangeNode& node, const InterchangeAlternative& alternative,
                const Values& inputs, const Site& site);

    /// Computes a formula.
    InterchangeValue Evaluate(const Formula& formula, Values known, const Site& site);

    /// An output of a node by its name in MaterialX, such as "out" or "rgb".
    InterchangeValue FindOutput(Values& outputs, const std::string& name, const Site& site);

private:
    using Feeds = std::vector<std::pair<std::string, InterchangeValue>>; ///< by port

    InterchangeValue EvaluateExpression(const Expression& expression, const Values& known,
                                        const Site& site);
    InterchangeValue Call(const Expression& call, const Values& known, const Site& site);
    Values MakeNode(const InterchangeNode& node, const InterchangeAlternative& alternative,
                    const Values& inputs, const Site& site);
    Values MakeTexture(const InterchangeAlternative& alternative, const Values& inputs,
                       const Site& site);
    InterchangeValue ReadTexture(const InterchangeValue& file, const Values& inputs,
                                 const InterchangeValue& coordinate, const Site& site);
    Values MakeStream(const Values& inputs, const Site& site);
    Values MakeConstant(const Values& inputs, const Site& site);
    InterchangeValue Component(const InterchangeValue& value, int index, const Site& site);
    std::string AddNode(DocumentNode record, const Feeds& feeds, const Site& site);

    MaterialBuilder& _builder;
    std::map<std::string, Values> _shared; ///< nodes without inputs, by helper
    std::map<std::string, InterchangeValue>
        _inTangentSpace;                          ///< normals, by the node that turns them
    std::map<std::string, std::string> _streams;  ///< ids by type and binding
    std::map<std::string, std::string> _textures; ///< ids by what is read and how
    std::map<std::string, std::string> _steps;    ///< ids by all that a step of a formula is
};

} // namespace Mox::Host
