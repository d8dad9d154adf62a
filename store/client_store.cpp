#include "store/client_store.h"

#include "store/settings.h"

namespace quillora {
namespace {

// Makes the writes of one operation a single transaction when no batch is
// under way, so that two processes adding clients at once never take the
// same number. Inside someone else's batch it does nothing.
class OperationBatch {
 public:
  explicit OperationBatch(ObjectStore& volume)
      : volume_(volume), began_(volume.BeginBatch()) {}
  ~OperationBatch() {
    if (began_) volume_.CommitBatch();
  }
  OperationBatch(const OperationBatch&) = delete;
  OperationBatch& operator=(const OperationBatch&) = delete;

 private:
  ObjectStore& volume_;
  bool began_;
};

PropValue CounterKind() { return PropValue::Number(kPropListKind, kCounterKind); }

}  // namespace

bool HasCounter(AuxStore& aux) {
  return aux.SeekValue(SeekType::kValueFirstEqual, CounterKind()) != 0;
}

ClientId TakeNextClientNumber(AuxStore& aux) {
  OperationBatch batch(aux.volume());
  const ObjectId record = aux.SeekValue(SeekType::kValueFirstEqual, CounterKind());
  if (record == 0) return 0;
  const std::vector<PropId> wanted = {kPropNextClient};
  PropList props;
  if (aux.ReadProps(&wanted, &props) == 0 || props.empty() ||
      (props[0].flags & kPropNotFound)) {
    return 0;
  }
  const auto number = static_cast<ClientId>(props[0].number);
  if (aux.WriteProps(record, {PropValue::Number(kPropNextClient, number + 1u)}) == 0) {
    return 0;
  }
  return number;
}

bool SeedCounter(AuxStore& aux, ClientId value) {
  return aux.WriteProps(0, {CounterKind(), PropValue::Number(kPropNextClient, value)}) !=
         0;
}

bool ClientStore::Open(std::uint32_t flags, const NotificationRequest* request) {
  LoadName();
  const bool existed = Exists(name_);
  // Another process may have created it since the check: then it is there.
  if (!existed && !Create() && !Exists(name_)) return false;
  // A data store of an older version kept the counter in the registry; its
  // value is carried into "Quillora Data 2" once, when the counter is missing.
  // Checked and seeded in one transaction, so that two processes opening a
  // new folder at once seed one counter, not two.
  AuxStore aux(volume_);
  if (aux.Open()) {
    const bool batch = volume_.BeginBatch();
    if (!HasCounter(aux)) {
      if (!existed) {
        SeedCounter(aux, 1);
      } else if (registry_ != nullptr) {
        SeedCounter(aux, ReadNextClientSeed(*registry_));
      }
    }
    if (batch) volume_.CommitBatch();
  }
  return OpenDatabase(name_, kPropClientName, flags, request);
}

ClientId AddClient(ClientStore& clients, const std::u16string& name) {
  if (name.empty()) return 0;
  OperationBatch batch(clients.volume());
  if (FindClient(clients, name)) return 0;
  ClientId number = 0;
  {
    AuxStore aux(clients.volume());
    if (aux.Open()) number = TakeNextClientNumber(aux);
  }
  const PropList props = {PropValue::Number(kPropClientId, number),
                          PropValue::Text(kPropClientName, name)};
  if (clients.WriteProps(0, props) == 0) return 0;
  return number;
}

bool RenameClient(ClientStore& clients, const std::u16string& name) {
  const ObjectId record = clients.current_record_id();
  if (record == 0) return false;
  return clients.WriteProps(record, {PropValue::Text(kPropClientName, name)}) != 0;
}

int ReadClient(ClientStore& clients, Client* client) {
  *client = Client{};
  PropList props;
  clients.ReadProps(nullptr, &props);
  // The seek decides, as for entries: the read's own result is not asked.
  const ObjectId id = clients.current_record_id();
  if (id == 0) return GetLastStoreError() == kErrorNoMoreItems ? 1 : -1;
  client->record_id = id;
  for (PropValue& v : props) {
    if (v.id == kPropClientId) client->number = static_cast<ClientId>(v.number);
    if (v.id == kPropClientName) client->name = std::move(v.text);
  }
  return 0;
}

ClientId ClientNumberOf(ClientStore& clients, ObjectId record_id) {
  if (record_id == 0 || clients.Seek(SeekType::kObjectId, record_id) != record_id)
    return 0;
  const std::vector<PropId> wanted = {kPropClientId};
  PropList props;
  if (clients.ReadProps(&wanted, &props) == 0 || props.empty() ||
      (props[0].flags & kPropNotFound)) {
    return 0;
  }
  return static_cast<ClientId>(props[0].number);
}

bool FindClient(ClientStore& clients, const std::u16string& name) {
  return clients.SeekValue(SeekType::kValueFirstEqual,
                           PropValue::Text(kPropClientName, name)) != 0;
}

bool FindClient(ClientStore& clients, const std::u16string& name, Client* client) {
  return FindClient(clients, name) && ReadClient(clients, client) == 0;
}

std::vector<Client> ClientList(ClientStore& clients) {
  std::vector<Client> list;
  Client client;
  clients.Seek(SeekType::kBeginning, 0);
  while (ReadClient(clients, &client) == 0) {
    list.push_back(std::move(client));
    clients.Seek(SeekType::kCurrent, 1);
  }
  return list;
}

}  // namespace quillora
