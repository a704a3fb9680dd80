#include "platform/stack/client/AsyncReader.h"

#include "platform/stack/client/PropertyAnswer.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Writer.h"

namespace bacnet {

BACSTAC_STATUS AsyncReader::Submit(unsigned device, AsyncRead& read) {
    const BACSTAC_STATUS status = m_client.FindPeer(device, read.m_peer);
    if (status != BACSTAC_OK)
        return status;
    Writer writer(read.m_request);
    EncodeReadProperty(read.Target, writer);
    read.m_client = &m_client;
    read.Destination = read.m_peer.Address;
    read.Service = static_cast<std::uint8_t>(ConfirmedService::readProperty);
    read.Parameters = writer.Written();
    read.Options.Check = IsOfSameProperty;
    m_caller.Submit(read);
    return BACSTAC_OK;
}

void AsyncRead::OnDone(const CallResult& result) {
    Error = {};
    Status = m_client->Conclude(m_peer, ConfirmedService::readProperty, result, Answer.Octets(), &Error);
    const TextScope text(m_client->TextEncoding(m_peer.Address));
    if (Status == BACSTAC_OK)
        Status = ReadAnswerInto(Answer.Octets(), Target, Contents);
    OnRead();
}

} // namespace bacnet
