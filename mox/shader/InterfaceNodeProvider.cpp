#include "mox/shader/InterfaceNodeProvider.h"

InterfaceNodeProvider::~InterfaceNodeProvider() = default;
