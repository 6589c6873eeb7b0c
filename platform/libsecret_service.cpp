#include "platform/libsecret_service.h"

#include <libsecret/secret.h>
#include <vector>

#include "platform/glib_call.h"
#include "platform/session_bus.h"
#include "platform/unprompted_service.h"

namespace tarnwick {
namespace {

struct ErrorHolder {
  GError* error = nullptr;
  ErrorHolder() = default;
  ErrorHolder(const ErrorHolder&) = delete;
  ErrorHolder& operator=(const ErrorHolder&) = delete;
  ~ErrorHolder() { g_clear_error(&error); }

  [[nodiscard]] SecretStatus status() const {
    return g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) ? SecretStatus::locked
                                                                        : SecretStatus::unavailable;
  }
};

struct HashUnref {
  void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};
struct SecretUnref {
  void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using Attributes = std::unique_ptr<GHashTable, HashUnref>;
using Secret = std::unique_ptr<SecretValue, SecretUnref>;
using Item = GlibPtr<SecretItem>;

const SecretSchema& schema() {
  // The name only labels what we add. Items are found by their attributes alone, so that one
  // stored with another tool is found too.
  static const SecretSchema value = [] {
    SecretSchema made{};
    made.name = "tarnwick.Password";
    made.flags = SECRET_SCHEMA_DONT_MATCH_NAME;
    made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
    made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
    return made;
  }();
  return value;
}

Attributes attributesOf(const SecretKey& key) {
  return Attributes(secret_attributes_build(&schema(), "service", key.service.c_str(), "account",
                                            key.account.c_str(), nullptr));
}

/// One exchange with the store, on a connection that ends with it. Where an operation gives no
/// answer, `status` tells why.
class Exchange {
 public:
  explicit Exchange(std::chrono::milliseconds limit) : call_(limit) {}

  bool open() {
    if (sessionBusAddress().empty()) return false;
    ErrorHolder holder;
    g_bus_get(G_BUS_TYPE_SESSION, call_.cancellable(), &GlibCall::arrived, &call_);
    bus_.reset(g_bus_get_finish(call_.wait().get(), &holder.error));
    if (!bus_) return failed(holder);
    // By default the end of the bus ends the program.
    g_dbus_connection_set_exit_on_close(bus_.get(), FALSE);

    secret_service_open(unpromptedServiceType(), nullptr, SECRET_SERVICE_NONE, call_.cancellable(),
                        &GlibCall::arrived, &call_);
    service_.reset(secret_service_open_finish(call_.wait().get(), &holder.error));
    return service_ != nullptr || failed(holder);
  }

  /// All items of the key, locked ones too; the unlocked ones have their secrets loaded.
  bool search(const SecretKey& key, std::vector<Item>& items) {
    const Attributes attributes = attributesOf(key);
    const auto flags =
        static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS);
    secret_service_search(service_.get(), &schema(), attributes.get(), flags, call_.cancellable(),
                          &GlibCall::arrived, &call_);
    ErrorHolder holder;
    GList* list = secret_service_search_finish(service_.get(), call_.wait().get(), &holder.error);
    if (holder.error != nullptr) return failed(holder);
    for (GList* entry = list; entry != nullptr; entry = entry->next) {
      items.emplace_back(static_cast<SecretItem*>(entry->data));
    }
    g_list_free(list);
    return true;
  }

  /// The collection that new items go to; none, without a failure, when the store has none.
  bool defaultCollection(GlibPtr<SecretCollection>& collection) {
    secret_collection_for_alias(service_.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE,
                                call_.cancellable(), &GlibCall::arrived, &call_);
    ErrorHolder holder;
    collection.reset(secret_collection_for_alias_finish(call_.wait().get(), &holder.error));
    return holder.error == nullptr || failed(holder);
  }

  bool erase(SecretItem& item) {
    secret_item_delete(&item, call_.cancellable(), &GlibCall::arrived, &call_);
    ErrorHolder holder;
    return secret_item_delete_finish(&item, call_.wait().get(), &holder.error) || failed(holder);
  }

  bool create(SecretCollection& collection, const SecretKey& key, const std::string& bytes) {
    const Attributes attributes = attributesOf(key);
    const Secret value(
        secret_value_new(bytes.data(), static_cast<gssize>(bytes.size()), "text/plain"));
    const std::string label = key.service + ": " + key.account;
    secret_item_create(&collection, &schema(), attributes.get(), label.c_str(), value.get(),
                       SECRET_ITEM_CREATE_REPLACE, call_.cancellable(), &GlibCall::arrived, &call_);
    ErrorHolder holder;
    const Item item(secret_item_create_finish(call_.wait().get(), &holder.error));
    return item != nullptr || failed(holder);
  }

  [[nodiscard]] SecretStatus status() const { return status_; }

 private:
  bool failed(const ErrorHolder& holder) {
    status_ = holder.status();
    return false;
  }

  GlibCall call_;
  GlibPtr<GDBusConnection> bus_;
  GlibPtr<::SecretService> service_;
  SecretStatus status_ = SecretStatus::unavailable;
};

std::string bytesOf(SecretValue& value) {
  gsize length = 0;
  const gchar* data = secret_value_get(&value, &length);
  return {data, length};
}

}  // namespace

SecretAnswer LibsecretService::find(const SecretKey& key) {
  Exchange exchange(limit_);
  std::vector<Item> items;
  if (!exchange.open() || !exchange.search(key, items)) return SecretAnswer(exchange.status());
  for (const Item& item : items) {
    if (secret_item_get_locked(item.get())) continue;
    const Secret value(secret_item_get_secret(item.get()));
    if (value) return SecretAnswer(SecretStatus::found, bytesOf(*value));
  }
  if (!items.empty()) return SecretAnswer(SecretStatus::locked);

  // Some stores do not even list what lies in a locked collection.
  GlibPtr<SecretCollection> collection;
  if (!exchange.defaultCollection(collection)) return SecretAnswer(exchange.status());
  const bool locked = collection && secret_collection_get_locked(collection.get());
  return SecretAnswer(locked ? SecretStatus::locked : SecretStatus::missing);
}

SecretStatus LibsecretService::remove(const SecretKey& key) {
  Exchange exchange(limit_);
  std::vector<Item> items;
  if (!exchange.open() || !exchange.search(key, items)) return exchange.status();
  for (const Item& item : items) {
    if (secret_item_get_locked(item.get())) return SecretStatus::locked;
    if (!exchange.erase(*item)) return exchange.status();
  }
  return SecretStatus::missing;
}

SecretStatus LibsecretService::add(const SecretKey& key, const std::string& bytes) {
  Exchange exchange(limit_);
  GlibPtr<SecretCollection> collection;
  if (!exchange.open() || !exchange.defaultCollection(collection)) return exchange.status();
  // Making a collection would ask the user for a password.
  if (!collection) return SecretStatus::unavailable;
  if (secret_collection_get_locked(collection.get())) return SecretStatus::locked;
  return exchange.create(*collection, key, bytes) ? SecretStatus::found : exchange.status();
}

}  // namespace tarnwick
