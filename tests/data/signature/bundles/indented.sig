{
  "mediaType": "application/vnd.dev.sigstore.bundle.v0.3+json",
  "verificationMaterial": {
    "publicKey": {
      "hint": "3d9d3b012fa53d56c8fa43c5c5ab97cc376b1edf00b1f3e983423515ac3cd2f9"
    },
    "tlogEntries": []
  },
  "dsseEnvelope": {
    "payload": "eyJfdHlwZSI6ICJodHRwczovL2luLXRvdG8uaW8vU3RhdGVtZW50L3YxIiwgInN1YmplY3QiOiBbeyJuYW1lIjogInBhY2thZ2UiLCAiZGlnZXN0IjogeyJzaGEyNTYiOiAiOGNmYTBlNTViMDkyMTE0ZWMxZDI3NGQ2MzNkMzE3ZjhkYmNlNDk3MjM5YWU3NjcyMmMwYWRkMTQyMjc4ZmY1ZSJ9fV0sICJwcmVkaWNhdGVUeXBlIjogImh0dHBzOi8vbW9kZWxfc2lnbmluZy9zaWduYXR1cmUvdjEuMCIsICJwcmVkaWNhdGUiOiB7InJlc291cmNlcyI6IFt7Im5hbWUiOiAibWFuaWZlc3QuanNvbiIsICJhbGdvcml0aG0iOiAic2hhMjU2IiwgImRpZ2VzdCI6ICIxMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExMTExIn0sIHsibmFtZSI6ICJuZXQuYmluIiwgImFsZ29yaXRobSI6ICJzaGEyNTYiLCAiZGlnZXN0IjogIjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIyMjIifSwgeyJuYW1lIjogInN1Yi9uZXQueG1sIiwgImFsZ29yaXRobSI6ICJzaGEyNTYiLCAiZGlnZXN0IjogIjMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMzMifV0sICJzZXJpYWxpemF0aW9uIjogeyJhbGxvd19zeW1saW5rcyI6IGZhbHNlLCAiaGFzaF90eXBlIjogInNoYTI1NiIsICJtZXRob2QiOiAiZmlsZXMiLCAiaWdub3JlX3BhdGhzIjogWyJtb2RlbC5zaWciXX19fQ==",
    "payloadType": "application/vnd.in-toto+json",
    "signatures": [
      {
        "sig": "MEUCIQDbbPkwBNSU4VveowfmjhiWL0O6jA2ttQbg1+thF1rtAAIgdaYhtqJzIldjLKmTCZGW044quQYAY1lwjI/whvjCN6I=",
        "keyid": ""
      }
    ]
  }
}