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

/// Thrown if a MaterialX node cannot be converted; what() explains why.
class NoCounterpart : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Creates material nodes for MaterialX nodes, as the table of standard nodes specifies.
class InterchangeGraph
{
public:
    using Values = std::map<std::string, InterchangeValue>;

    /// The MaterialX node that is being converted.
    struct Site
    {
        /// Returns the site of a formula step with its own name.
        Site Step(const std::string& name) const;

        /// Creates a node record of the given type, with a position and a description unless the
        /// site is a step.
        DocumentNode Record(const std::string& type) const;

        std::string Id;
        std::string Owner; ///< for a step of a formula, the id of the MaterialX node
        std::string Type;  ///< MaterialX type
        int Line = 0;
        bool IsNormalMap = false; ///< an image that is read only by normal maps
        std::optional<float> PositionX;
        std::optional<float> PositionY;
        std::string Description;
        bool IsStep = false; ///< part of a formula
    };

    /// @param builder must outlive the object
    explicit InterchangeGraph(MaterialBuilder& builder) : _builder(builder) {}

    /// Returns the first alternative whose conditions hold, or null.
    static const InterchangeAlternative* Choose(const InterchangeNode& node, const Values& inputs,
                                                const std::string& type);

    static bool Holds(const std::vector<InterchangeCondition>& conditions, const Values& inputs,
                      const std::string& type);

    /// Parses the default value of an unconnected input: numbers, a string, or the name of data
    /// that the mesh or the scene supplies.
    static InterchangeValue Default(const std::string& text);

    /// Creates the node for data that the mesh or the scene supplies; other values are returned
    /// unchanged.
    InterchangeValue Supply(const InterchangeValue& value, const Site& site);

    /// Creates the nodes that the alternative specifies.
    /// @param inputs all inputs of the MaterialX node
    /// @returns the outputs by name
    Values Make(const InterchangeNode& node, const InterchangeAlternative& alternative,
                const Values& inputs, const Site& site);

    /// Evaluates a formula, creating nodes as needed.
    InterchangeValue Evaluate(const Formula& formula, Values known, const Site& site);

    /// Finds an output of a node by its MaterialX name, such as "out" or "rgb".
    InterchangeValue FindOutput(Values& outputs, const std::string& name, const Site& site);

private:
    using Feeds = std::vector<std::pair<std::string, InterchangeValue>>; ///< keyed by port

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
    std::map<std::string, Values> _shared; ///< nodes without inputs, keyed by helper
    std::map<std::string, InterchangeValue> _inTangentSpace; ///< converted normals, keyed by the
                                                             ///< node that converts them
    std::map<std::string, std::string> _streams;  ///< node ids, keyed by type and binding
    std::map<std::string, std::string> _textures; ///< node ids, keyed by texture and sampling
                                                  ///< settings
    std::map<std::string, std::string> _steps;    ///< node ids, keyed by a complete description of
                                                  ///< the step
};

} // namespace Mox::Host
