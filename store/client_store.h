// Clients in "Quillora Clients" and the client-number counter in
// "Quillora Data 2". A client record is {1201 number, 1002 name}; the counter
// record is {1102 kind 0, 1404 next number}. Client numbers are never reused:
// the counter only grows.
#ifndef QUILLORA_STORE_CLIENT_STORE_H_
#define QUILLORA_STORE_CLIENT_STORE_H_

#include <string>
#include <vector>

#include "store/record_store.h"

namespace quillora {

inline constexpr PropId kPropNextClient = MakePropId(1404, kPropUI4);
// The record kind (property 1102) of the counter in "Quillora Data 2".
inline constexpr std::uint16_t kCounterKind = 0;

struct Client {
  ClientId number = 0;
  std::u16string name;
  ObjectId record_id = 0;
  friend bool operator==(const Client&, const Client&) = default;
};

// The counter (`aux` open on 1102).

// True when the counter record exists.
bool HasCounter(AuxStore& aux);
// The counter's value, which it then advances by one; 0 when there is no
// counter record or it cannot be read or written back.
ClientId TakeNextClientNumber(AuxStore& aux);
// Writes a new counter record holding `value`; false when the write fails.
bool SeedCounter(AuxStore& aux, ClientId value);

// Clients (`clients` open on 1002, by name).

// Adds a client with the next client number and answers that number; 0 with
// nothing written when the name is empty or already a client's (exact, letter
// case counts). The counter lives in a "Quillora Data 2" opened for the call;
// without a counter the client is written with number 0.
ClientId AddClient(ClientStore& clients, const std::u16string& name);
// Rewrites the name of the store's current client record; its number and the
// time entries that name it stay as they are. False when the write fails.
bool RenameClient(ClientStore& clients, const std::u16string& name);
// Reads the current record, reader convention of the entry store: 0 read,
// 1 at the end of the records, -1 failure.
int ReadClient(ClientStore& clients, Client* client);
// The number of the client record `record_id`; 0 when it cannot be read.
ClientId ClientNumberOf(ClientStore& clients, ObjectId record_id);
// Moves to the client named exactly `name`; true when there is one.
bool FindClient(ClientStore& clients, const std::u16string& name);
// FindClient, then reads that client; false when there is none or it cannot
// be read.
bool FindClient(ClientStore& clients, const std::u16string& name, Client* client);
// Every client in name order (the client list of the editor and the tree).
std::vector<Client> ClientList(ClientStore& clients);

}  // namespace quillora

#endif  // QUILLORA_STORE_CLIENT_STORE_H_
