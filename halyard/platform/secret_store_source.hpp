// Where secret_store.cpp gets the real store from; one source per system.
#pragma once

#include "halyard/platform/secret_store.hpp"

namespace halyard {

SecretStoring& systemSecretStore();

}  // namespace halyard
