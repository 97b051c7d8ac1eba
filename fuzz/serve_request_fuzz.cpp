// Any request gets one reply: JSON, or a status and a sentence.

#include <fuzz/input.h>
#include <tools/zelvora/serve/http_server.h>

#include <ZelvoraSDK/base/json_read.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvora;
  static const serve::BackendOptions options{
      .catalogue = {{.id = "dress",
                     .title = "Dress",
                     .screenId = "detail",
                     .phrases = {"summer dress"},
                     .params = Params{{"p", "1"}},
                     .say = "Here"}},
      .spec = R"({"tasks":[{"id":"cart","title":"Cart","screenId":"c","keywords":["basket"]}]})",
      .requiredToken = std::nullopt,
      .transcriber = nullptr};
  const std::vector<std::string> pieces = fuzz::piecesOf(fuzz::textOf(data, size));
  const serve::Reply reply = serve::reply(options, {.path = fuzz::pieceAt(pieces, 0),
                                                    .authorization = fuzz::pieceAt(pieces, 1),
                                                    .body = fuzz::pieceAt(pieces, 2),
                                                    .audio = fuzz::pieceAt(pieces, 3),
                                                    .locale = fuzz::pieceAt(pieces, 4)});
  const std::string form = fuzz::pieceAt(pieces, 2);
  const std::string_view part = serve::formPart(form, fuzz::pieceAt(pieces, 5), "audio");
  fuzz::require(part.empty() || (part.data() >= form.data() &&
                                 part.data() + part.size() <= form.data() + form.size()));
  fuzz::require(!reply.body.empty());
  if (reply.status == 200)
    static_cast<void>(parseJson(reply.body));
  else
    fuzz::require(reply.status >= 400 && reply.status <= 501);
  return 0;
}
