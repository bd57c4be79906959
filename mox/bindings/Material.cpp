#include "mox/bindings/Material.h"

namespace Mox::Materials {

Material::Material() = default;

Material::~Material() = default;

void Material::AddBinding(const boost::shared_ptr<Binding>& binding)
{
    Bindings.push_back(binding);
}

} // namespace Mox::Materials
