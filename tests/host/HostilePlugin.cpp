#include "mox/Export.h"
#include "mox/InterfaceVersion.h"
#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/authoring/GuiNodeFactory.h"
#include "mox/bindings/FloatBinding.h"
#include "mox/bindings/Material.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cstdlib>
#include <map>
#include <new>

// A plug-in whose node types fail on demand: the type "GetTitle-number" throws a number from
// GetTitle. The part after the hyphen is one of the faults of Fail. If the environment variable
// HOSTILE_ROW is set, the catalogue has an additional, faulty row.

using namespace Mox::Materials;

namespace {

/// An exception class whose code is unloaded with the plug-in.
class OwnException : public std::exception
{
public:
    const char* what() const noexcept override { return "an exception of its own"; }
};

class SilentException : public std::exception
{
public:
    const char* what() const noexcept override { return nullptr; }
};

class OwnBadAlloc : public std::bad_alloc
{};

class OwnClass
{
public:
    virtual ~OwnClass() = default;
};

const std::map<std::string, void (*)()> throwers = {
    {"ShaderError", [] { throw ShaderError("a ShaderError"); }},
    {"string", [] { throw std::string("a string"); }},
    {"edge", [] { throw boost::bad_weak_ptr(); }},
    {"exception", [] { throw OwnException(); }},
    {"silent", [] { throw SilentException(); }},
    {"memory", [] { throw OwnBadAlloc(); }},
    {"class", [] { throw OwnClass(); }},
    {"text", [] { throw "a text"; }},
    {"number", [] { throw 5; }},
};

class HostileType
{
public:
    explicit HostileType(const std::string& name)
        : _operation(name.substr(0, name.find('-'))), _fault(name.substr(name.find('-') + 1))
    {}

    bool Is(const std::string& operation, const std::string& fault) const
    {
        return operation == _operation && fault == _fault;
    }

    /// Throws if this is the operation that is to fail.
    void Enter(const std::string& operation) const
    {
        const auto thrower = throwers.find(_fault);
        if (operation == _operation && thrower != throwers.end())
            thrower->second();
    }

private:
    std::string _operation;
    std::string _fault;
};

class HostileBinding : public FloatBinding
{
public:
    explicit HostileBinding(const HostileType& type)
        : FloatBinding(StreamType::Float, "hostile", 1), _type(type)
    {}

    std::uint32_t GetCount() const override
    {
        _type.Enter("GetCount");
        return FloatBinding::GetCount();
    }

    float GetDefault(std::uint32_t index) const override
    {
        _type.Enter("GetDefault");
        return FloatBinding::GetDefault(index);
    }

    std::string GetDefaultText() const override
    {
        _type.Enter("GetDefaultText");
        return FloatBinding::GetDefaultText();
    }

    void SetDefaultText(const std::string& text) override
    {
        _type.Enter("SetDefaultText");
        FloatBinding::SetDefaultText(text);
    }

    void WriteXml(xmlNodePtr element) const override
    {
        _type.Enter("WriteXml");
        FloatBinding::WriteXml(element);
    }

    void ReadXml(xmlNodePtr element) override
    {
        _type.Enter("ReadXml");
        FloatBinding::ReadXml(element);
    }

private:
    HostileType _type;
};

class HostileNode : public GuiNode
{
public:
    explicit HostileNode(const std::string& typeName) : GuiNode(typeName), _type(typeName)
    {
        _type.Enter("Create");
        LoseRecords("Create");
    }

    void UpdatePorts(const boost::shared_ptr<void>&) override
    {
        InputPorts.clear();
        OutputPorts = {GuiPort("out_value", "")};
        Enter("UpdatePorts");
    }

    std::string GetTitle() override
    {
        std::string title = GuiNode::GetTitle(); // requires the node's records
        Enter("GetTitle");
        return title;
    }

    void ResolveComponentCounts() override
    {
        Enter("ResolveComponentCounts");
        GuiNode::ResolveComponentCounts();
    }

    void ResolvePrecisions() override
    {
        Enter("ResolvePrecisions");
        GuiNode::ResolvePrecisions();
    }

    void GenerateShader(ShaderGraphGenerator&) override { Enter("GenerateShader"); }

    bool HasBinding() override
    {
        Enter("HasBinding");
        return true;
    }

    void CreateBindings(const boost::shared_ptr<Material>& material) override
    {
        Enter("CreateBindings");
        if (_type.Is("CreateBindings", "nothing"))
            material->AddBinding({});
        material->AddBinding(boost::make_shared<HostileBinding>(_type));
    }

    void LoadProperties(const boost::shared_ptr<GuiPropertyBag>& stored) override
    {
        GuiNode::LoadProperties(stored); // requires the node's records
        Enter("LoadProperties");
    }

private:
    void Enter(const std::string& operation)
    {
        LoseRecords(operation);
        _type.Enter(operation);
    }

    void LoseRecords(const std::string& operation)
    {
        if (_type.Is(operation, "bag"))
            Properties.reset();
        if (_type.Is(operation, "property")) {
            Properties->Properties.back().reset();
            Properties->Index.begin()->second.reset();
        }
        if (_type.Is(operation, "name"))
            Name.reset();
        if (_type.Is(operation, "kind"))
            Type->SetInt(3);
    }

    HostileType _type;
};

constexpr const char* operations[] = {"Create",
                                      "UpdatePorts",
                                      "GetTitle",
                                      "ResolveComponentCounts",
                                      "ResolvePrecisions",
                                      "GenerateShader",
                                      "HasBinding",
                                      "CreateBindings",
                                      "LoadProperties",
                                      "GetCount",
                                      "GetDefault",
                                      "GetDefaultText",
                                      "SetDefaultText",
                                      "WriteXml",
                                      "ReadXml"};

/// The faults that throw nothing.
constexpr const char* quietFaults[] = {"nothing", "bag", "property", "name", "kind"};

/// Icons that would crash a host that does not check them.
constexpr const char* nullRow[] = {"1 2 1 1", " c None", " ", nullptr};
constexpr const char* nullColour[] = {"1 1 2 1", " c None", nullptr};
constexpr const char* nullHeader[] = {nullptr};
constexpr const char* shortRow[] = {"2 1 1 1", " c None", " "};
constexpr const char* goodIcon[] = {"2 1 2 1", "  c None", "x m white c #FF8001", " x"};

GuiNodeDescription FaultyRow(const std::string& fault)
{
    GuiNodeDescription row("Faulty");
    row.Icon = goodIcon;
    if (fault == "label")
        row.Label = "caf\xe9";
    else if (fault == "type")
        row.TypeName = "\xff";
    else if (fault == "library")
        row.Library = "\xc3";
    else if (fault == "null row")
        row.Icon = nullRow;
    else if (fault == "null colour")
        row.Icon = nullColour;
    else if (fault == "short row")
        row.Icon = shortRow;
    else if (fault == "null header")
        row.Icon = nullHeader;
    return row;
}

class HostileFactory : public GuiNodeFactory
{
public:
    HostileFactory()
    {
        for (const std::string operation : operations) {
            for (const auto& [fault, thrower] : throwers)
                Descriptions.emplace_back(Compose(operation, "-", fault));
            for (const std::string fault : quietFaults)
                Descriptions.emplace_back(Compose(operation, "-", fault));
        }
        if (const char* fault = std::getenv("HOSTILE_ROW"))
            Descriptions.push_back(FaultyRow(fault));
    }

    boost::shared_ptr<GuiNode> Create(const std::string& typeName) override
    {
        if (typeName == "Create-nothing")
            return {};
        return boost::make_shared<HostileNode>(typeName);
    }
};

} // namespace

MOX_PLUGIN_EXPORT std::int32_t GetMaterialLibVersion()
{
    return InterfaceVersion;
}

MOX_PLUGIN_EXPORT GuiNodeFactory* CreateNodeFactory()
{
    return new HostileFactory;
}
